Attribute VB_Name = "ZavrelDeclarations"
' The entry points of ZavrelFuncs8_x64.xll for macros, for 64-bit Excel only.
'
' The macro editor finds the library because Excel has already loaded it as an add-in (see ZavrelCompanion).
'
' Arguments
'   numbers() As Double   one dimension, declared As Double; a Variant that holds an array is rejected
'   matrix() As Double    two dimensions, rows (observations) first
'   As Variant            your Variant variable, which the call fills; if a worksheet function fills it
'                         later, it must live until then
'   As String             characters of the system's code page; all others become "?"
'   As LongPtr            wide text with any characters: StrPtr(text) to pass a text,
'                         VarPtr(text) for a String variable that the call fills
'
' Results
'   failure number        0, or a number that ZavrelGetExceptionInfoVB explains (ZavrelRaiseFailure)
'   status                0, or the reason why there is no ordinary number; the result then holds a code
'                         that is not a number (ZavrelReasonOf)
Option Explicit

' --- Announce and withdraw. The texts may be vbNullString; pass wide texts by StrPtr. ---

Public Declare PtrSafe Sub InitializeXlaInformationVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal excelApplication As Object, ByVal companion As Object, ByVal applicationId As Integer, _
    ByVal workbookFile As LongPtr, ByVal languageId As Long, ByVal version As LongPtr, _
    ByVal helpLocation As LongPtr)
Public Declare PtrSafe Sub InitializeXlaInformationW Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal excelApplication As Object, ByVal companion As Object, ByVal applicationId As Integer, _
    ByVal workbookFile As LongPtr, ByVal languageId As Long, ByVal version As LongPtr, _
    ByVal helpLocation As LongPtr)
Public Declare PtrSafe Sub UninitializeXlaInformation Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal applicationId As Integer)

' --- Failures and versions ---

' 1 if the number is known. Pass the texts by VarPtr, or 0 for an unwanted text.
Public Declare PtrSafe Function ZavrelGetExceptionInfoVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal failureNumber As Long, ByVal className As LongPtr, ByVal place As LongPtr, _
    ByVal message As LongPtr) As Long
Public Declare PtrSafe Function ZavrelFuncsVersion Lib "ZavrelFuncs8_x64.xll" () As Long

' --- Help ---

' Opens the help at a function ("ZavMean") or another of its pages, and its contents for 0. Pass the name by
' StrPtr. Returns a failure number.
Public Declare PtrSafe Function ZavrelShowHelpVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal name As LongPtr) As Long

' --- Writing into a range. Returns a failure number. ---
' An element of a result that stands for an error or a blank is written as that error or blank.

Public Declare PtrSafe Function ZavrelWriteRangeVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef target As Variant, ByRef values() As Double) As Long
Public Declare PtrSafe Function ZavrelWriteRangeValuesVB Lib "ZavrelFuncs8_x64.xll" _
    Alias "ZavrelWriteRangeVB" (ByRef target As Variant, ByRef values() As Variant) As Long

' --- Progress of a macro's own long work. Pass texts by StrPtr. ---
' A dialog appears after a second and stays until the end, or until no step has come for a minute. A step returns 1
' if the user has cancelled, otherwise 0; share is from 0 to 1. The others return failure numbers.

Public Declare PtrSafe Function ZavrelBeginProgressVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal title As LongPtr) As Long
Public Declare PtrSafe Function ZavrelStepProgressVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal text As LongPtr, ByVal share As Double) As Long
Public Declare PtrSafe Function ZavrelEndProgressVB Lib "ZavrelFuncs8_x64.xll" () As Long

' --- Open workbooks. Return failure numbers; after a failure the workbook is as it was. ---
' Pass texts by StrPtr. Values that a workbook keeps: a text, a number, an array of doubles with two dimensions,
' an array of bytes, up to 1 MB each.

Public Declare PtrSafe Function ZavrelStoreInWorkbookVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal workbook As Object, ByVal name As LongPtr, ByRef value As Variant) As Long
Public Declare PtrSafe Function ZavrelReadFromWorkbookVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal workbook As Object, ByVal name As LongPtr, ByRef value As Variant) As Long
Public Declare PtrSafe Function ZavrelRemoveFromWorkbookVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal workbook As Object, ByVal name As LongPtr) As Long

' Lifts the protection of a sheet and fills in a number, by which it is put back as it was.
Public Declare PtrSafe Function ZavrelLiftProtectionVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal sheet As Object, ByVal password As LongPtr, ByRef number As Variant) As Long
Public Declare PtrSafe Function ZavrelPutBackProtectionVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal number As Long) As Long

' A block of formulas (in English, with "="), texts and numbers from the range's first cell on; and an array
' formula of any length that fills the range.
Public Declare PtrSafe Function ZavrelWriteFormulasVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef target As Variant, ByRef formulas() As Variant) As Long
Public Declare PtrSafe Function ZavrelWriteArrayFormulaVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef target As Variant, ByVal formula As LongPtr) As Long

' Analyses by their names ("summary", "box-plots"), which zavhost report --list shows. "by" is the heading of the
' column that divides the rows into groups, or 0.
Public Declare PtrSafe Function ZavrelRunAnalysisVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef data As Variant, ByVal analysis As LongPtr, ByVal by As LongPtr) As Long
Public Declare PtrSafe Function ZavrelAskForAnalysisVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal excelApplication As Object, ByVal analysis As LongPtr) As Long
Public Declare PtrSafe Function ZavrelRepeatAnalysisVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal workbook As Object) As Long
Public Declare PtrSafe Function ZavrelAnalysesMenuVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal menu As LongPtr) As Long

' --- A formula in another language of Excel. Returns a failure number. ---
' Languages: "en", "de", or the code of a table beside the add-in. style: xlA1 or xlR1C1. Pass the texts by StrPtr,
' the String variable that the call fills by VarPtr.

Public Declare PtrSafe Function ZavrelTranslateFormulaVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal formula As LongPtr, ByVal fromLanguage As LongPtr, ByVal toLanguage As LongPtr, _
    ByVal style As Long, ByVal translated As LongPtr) As Long

' --- The cells of a range, which the hidden worksheet functions fill in. Return failure numbers. ---
' Pass variables declared "Dim v As Variant". An array variable, "Dim v() As Variant", is refused with a failure
' number, or shows #VALUE! when its address is used. A call that fails uses up what was arranged for it.

Public Declare PtrSafe Function VariantIdString Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef filled As Variant) As String
Public Declare PtrSafe Function ZavrelGetCellValuesSetArrayVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef values As Variant, ByRef indices As Variant) As Long
Public Declare PtrSafe Function ZavrelGetCellValuesSetArrayPrivateVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef values As Variant, ByRef indices As Variant, ByRef id As String) As Long
Public Declare PtrSafe Function ZavrelGetCellValuesCategorySetArrayPrivateVB _
    Lib "ZavrelFuncs8_x64.xll" (ByRef values As Variant, ByRef blankName As Variant, _
    ByRef id As String) As Long
Public Declare PtrSafe Function ZavrelGetCellValuesNumericSetArrayPrivateVB _
    Lib "ZavrelFuncs8_x64.xll" (ByRef values As Variant, ByVal forNonNumbers As Double, _
    ByRef id As String) As Long
Public Declare PtrSafe Function ZavrelGetCellValueCategory Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef target As Variant) As String
Public Declare PtrSafe Function ZavrelGetCellValueCategoryW Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef target As Variant, ByVal categoryName As LongPtr) As Long

' --- Statistics of an array. Return statuses. ---

Public Declare PtrSafe Function ZavrelMinVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelMaxVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelMeanVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelStdDevVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelStdDevPVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelVarianceVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelVariancePVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelSkewnessVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelSkewnessPVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelKurtosisVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelKurtosisPVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelSumSqVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelSumDevSqVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByRef result As Double) As Integer
' discrete: -1 depends on the data, 0 continuous, 1 discrete.
Public Declare PtrSafe Function ZavrelModeVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByVal discrete As Integer, ByRef result As Double) As Integer
' The numbers must be in ascending order. method: -1 depends on the data, 0 to 5 as in ZavPercentile.
Public Declare PtrSafe Function ZavrelPercentileVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByVal p As Double, ByVal method As Integer, _
    ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelQuartileVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByVal quartile As Double, ByVal method As Integer, _
    ByRef result As Double) As Integer
Public Declare PtrSafe Function ZavrelMedianVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef numbers() As Double, ByVal method As Integer, ByRef result As Double) As Integer
' 10 if the standard deviation is 0, 4 on overflow.
Public Declare PtrSafe Function ZavrelStandardizeVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal x As Double, ByVal mean As Double, ByVal standardDeviation As Double, _
    ByRef result As Double) As Integer

' --- Two series. Return 5 if they differ in length or are too short. ---

Public Declare PtrSafe Function ZavrelCovarianceVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef x() As Double, ByRef y() As Double, ByRef result As Double) As Long
Public Declare PtrSafe Function ZavrelCovariancePVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef x() As Double, ByRef y() As Double, ByRef result As Double) As Long
Public Declare PtrSafe Function ZavrelCorrelationCoeffVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef x() As Double, ByRef y() As Double, ByRef result As Double) As Long

' --- Categories, which the worksheet functions for categories fill in. Return failure numbers. ---

Public Declare PtrSafe Function ZavrelCategoryNamesGetArrayVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef names As Variant) As Long
Public Declare PtrSafe Function ZavrelCategoryNamesSetArrayPrivateVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef names As Variant, ByRef id As String) As Long
Public Declare PtrSafe Function ZavrelCategoryNamesSetArrayPrivateWVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef names As Variant, ByVal id As LongPtr) As Long
Public Declare PtrSafe Function ZavrelCategoryIndicesSetArrayVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef indices As Variant) As Long
Public Declare PtrSafe Function ZavrelCategoryIndicesSetArrayPrivateVB _
    Lib "ZavrelFuncs8_x64.xll" (ByRef indices As Variant, ByRef id As String) As Long

' --- Matrices. Return failure numbers; functions with a Variant result return it as the code of an error value. ---

Public Declare PtrSafe Function CalculateCovarianceMatrixVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal useRanks As Long, ByVal sampleDivisor As Long, ByVal listwiseDeletion As Long, _
    ByRef data() As Double, ByRef result As Variant) As Long
Public Declare PtrSafe Function CalculateCorrelationMatrixVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal useRanks As Long, ByVal sampleDivisor As Long, ByVal listwiseDeletion As Long, _
    ByRef data() As Double, ByRef result As Variant) As Long
Public Declare PtrSafe Function MatrixAddVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef a() As Double, ByRef b() As Double) As Variant
Public Declare PtrSafe Function MatrixMultiplyVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef a() As Double, ByRef b() As Double) As Variant
Public Declare PtrSafe Function MatrixInverseVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef a() As Double) As Variant
Public Declare PtrSafe Function MatrixDeterminantVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef a() As Double) As Double
Public Declare PtrSafe Function CalculateEigenvaluesVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef matrix() As Double, ByRef eigenvalues As Variant) As Long
Public Declare PtrSafe Function CalculateEigenvectorsVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef matrix() As Double, ByRef eigenvectors As Variant) As Long
Public Declare PtrSafe Function CalculateEigendataVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef matrix() As Double, ByRef eigenvalues As Variant, ByRef eigenvectors As Variant) As Long
Public Declare PtrSafe Function CalculatePCAScoresVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByRef data() As Double, ByRef scores As Variant) As Long

' --- Distributions. selector: 0 mean, 1 standard deviation, 2 variance, 3 skewness, 4 kurtosis,
'     5 mode, 6 discrete mean, 7 density, 8 cumulative probability of x, 9 its inverse,
'     10 upper tail of x, 11 its inverse. Return 0, or a code if there is no such value. ---

Public Declare PtrSafe Function ZavrelNormalVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal mean As Double, ByVal standardDeviation As Double, ByVal selector As Long, _
    ByVal x As Double, ByRef result As Double) As Long
Public Declare PtrSafe Function ZavrelStudentVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal degreesOfFreedom As Long, ByVal selector As Long, ByVal x As Double, _
    ByRef result As Double) As Long
Public Declare PtrSafe Function ZavrelChisqVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal degreesOfFreedom As Long, ByVal selector As Long, ByVal x As Double, _
    ByRef result As Double) As Long
Public Declare PtrSafe Function ZavrelFVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal numeratorDf As Long, ByVal denominatorDf As Long, ByVal selector As Long, _
    ByVal x As Double, ByRef result As Double) As Long
Public Declare PtrSafe Function ZavrelBinomialVB Lib "ZavrelFuncs8_x64.xll" ( _
    ByVal trials As Long, ByVal p As Double, ByVal selector As Long, ByVal x As Double, _
    ByRef result As Double) As Long

' --- Random numbers ---

' From 0 to less than 1, like ZavRand.
Public Declare PtrSafe Function ZavrelRandVB Lib "ZavrelFuncs8_x64.xll" () As Double
