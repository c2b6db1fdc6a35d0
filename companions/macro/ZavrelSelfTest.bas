Attribute VB_Name = "ZavrelSelfTest"
' Calls every entry point once, with small data, and writes what came of it into the sheet Macros of
' self-test.xlsx, which compares it with what is right.
'
'   Open self-test.xlsx, then Alt+F8, ZavrelRunSelfTest
Option Explicit

Private Const SheetName As String = "Macros"
Private Const FirstRow As Long = 7
Private Const ResultColumn As Long = 3
Private Const DataCells As String = "H7:H10" ' north, south, North, 25

Public Sub ZavrelRunSelfTest()
    Dim sheet As Worksheet
    Dim row As Long, last As Long
    On Error Resume Next
    Set sheet = ActiveWorkbook.Worksheets(SheetName)
    On Error GoTo 0
    If sheet Is Nothing Then
        MsgBox ZavrelText("Open self-test.xlsx, and start this macro again.", _
            "Zuerst self-test.xlsx laden, dann dieses Makro noch einmal starten."), vbExclamation, "Zavrel Functions"
        Exit Sub
    End If
    last = FirstRow
    Do While sheet.Cells(last + 1, 1).Value <> ""
        last = last + 1
    Loop
    sheet.Range(sheet.Cells(FirstRow, ResultColumn), sheet.Cells(last, ResultColumn)).ClearContents
    For row = FirstRow To last
        sheet.Cells(row, ResultColumn).Value = ResultOf(sheet.Cells(row, 1).Value, sheet)
    Next row
    Application.CalculateFull
    MsgBox sheet.Range("B4").Value, vbInformation, "Zavrel Functions"
End Sub

' What a call gives, or in its place a text that says why there is nothing.
Private Function ResultOf(ByVal entryPoint As String, ByVal sheet As Worksheet) As Variant
    Dim result As Variant
    On Error GoTo Failed
    result = StatisticOf(entryPoint)
    If IsEmpty(result) Then result = DistributionOf(entryPoint)
    If IsEmpty(result) Then result = MatrixOf(entryPoint)
    If IsEmpty(result) Then result = CellsOf(entryPoint, sheet)
    If IsEmpty(result) Then result = CategoriesOf(entryPoint, sheet)
    If IsEmpty(result) Then result = WorkbookOf(entryPoint)
    If IsEmpty(result) Then result = SessionOf(entryPoint, sheet)
    If IsEmpty(result) Then result = "not called: this module does not know it"
    ResultOf = result
    Exit Function
Failed:
    ResultOf = "error " & Err.Number & ": " & Err.Description
End Function

Private Function StatisticOf(ByVal entryPoint As String) As Variant
    Dim x() As Double, first() As Double, second() As Double
    Dim result As Double, status As Long
    x = NumbersOf(2, 4, 4, 4, 5, 5, 7, 9)
    first = NumbersOf(1, 2, 3)
    second = NumbersOf(2, 4, 7)
    Select Case entryPoint
        Case "ZavrelMinVB": status = ZavrelMinVB(x, result)
        Case "ZavrelMaxVB": status = ZavrelMaxVB(x, result)
        Case "ZavrelMeanVB": status = ZavrelMeanVB(x, result)
        Case "ZavrelStdDevVB": status = ZavrelStdDevVB(x, result)
        Case "ZavrelStdDevPVB": status = ZavrelStdDevPVB(x, result)
        Case "ZavrelVarianceVB": status = ZavrelVarianceVB(x, result)
        Case "ZavrelVariancePVB": status = ZavrelVariancePVB(x, result)
        Case "ZavrelSkewnessVB": status = ZavrelSkewnessVB(x, result)
        Case "ZavrelSkewnessPVB": status = ZavrelSkewnessPVB(x, result)
        Case "ZavrelKurtosisVB": status = ZavrelKurtosisVB(x, result)
        Case "ZavrelKurtosisPVB": status = ZavrelKurtosisPVB(x, result)
        Case "ZavrelSumSqVB": status = ZavrelSumSqVB(x, result)
        Case "ZavrelSumDevSqVB": status = ZavrelSumDevSqVB(x, result)
        Case "ZavrelModeVB": status = ZavrelModeVB(x, 1, result)
        Case "ZavrelPercentileVB": status = ZavrelPercentileVB(x, 0.9, 0, result)
        Case "ZavrelQuartileVB": status = ZavrelQuartileVB(x, 3, 0, result)
        Case "ZavrelMedianVB": status = ZavrelMedianVB(x, 0, result)
        Case "ZavrelStandardizeVB": status = ZavrelStandardizeVB(9, 5, 2, result)
        Case "ZavrelCovarianceVB": status = ZavrelCovarianceVB(first, second, result)
        Case "ZavrelCovariancePVB": status = ZavrelCovariancePVB(first, second, result)
        Case "ZavrelCorrelationCoeffVB": status = ZavrelCorrelationCoeffVB(first, second, result)
        Case Else: Exit Function
    End Select
    StatisticOf = NumberOrStatus(status, result)
End Function

Private Function DistributionOf(ByVal entryPoint As String) As Variant
    Const Cumulative As Long = 8
    Const Quantile As Long = 9
    Dim result As Double, status As Long
    Select Case entryPoint
        Case "ZavrelNormalVB": status = ZavrelNormalVB(0, 1, Cumulative, 1.96, result)
        Case "ZavrelStudentVB": status = ZavrelStudentVB(9, Quantile, 0.975, result)
        Case "ZavrelChisqVB": status = ZavrelChisqVB(3, Quantile, 0.95, result)
        Case "ZavrelFVB": status = ZavrelFVB(3, 20, Quantile, 0.95, result)
        Case "ZavrelBinomialVB": status = ZavrelBinomialVB(10, 0.5, Cumulative, 3, result)
        Case "ZavrelRandVB"
            result = ZavrelRandVB()
            DistributionOf = (result >= 0 And result < 1)
            Exit Function
        Case Else: Exit Function
    End Select
    DistributionOf = NumberOrStatus(status, result)
End Function

Private Function MatrixOf(ByVal entryPoint As String) As Variant
    Dim a() As Double, symmetric() As Double, columns() As Double, rows() As Double
    Dim result As Variant, vectors As Variant
    Dim failure As Long
    a = MatrixFrom(2, 1, 2, 3, 4)
    symmetric = MatrixFrom(2, 2, 1, 1, 2)
    columns = MatrixFrom(2, 1, 2, 2, 4, 3, 7)
    rows = MatrixFrom(2, 1, 2, 3, 4, 5, 6)
    Select Case entryPoint
        Case "CalculateCovarianceMatrixVB"
            failure = CalculateCovarianceMatrixVB(0, 1, 0, columns, result)
            If failure = 0 Then MatrixOf = ElementOf(result, 1, 2)
        Case "CalculateCorrelationMatrixVB"
            failure = CalculateCorrelationMatrixVB(0, 1, 0, columns, result)
            If failure = 0 Then MatrixOf = ElementOf(result, 1, 2)
        Case "MatrixAddVB": MatrixOf = ElementOf(MatrixAddVB(a, a), 2, 2)
        Case "MatrixMultiplyVB": MatrixOf = ElementOf(MatrixMultiplyVB(a, a), 2, 2)
        Case "MatrixInverseVB": MatrixOf = ElementOf(MatrixInverseVB(a), 1, 1)
        Case "MatrixDeterminantVB": MatrixOf = NumberOrStatus(0, MatrixDeterminantVB(a))
        Case "CalculateEigenvaluesVB"
            failure = CalculateEigenvaluesVB(symmetric, result)
            If failure = 0 Then MatrixOf = result(LBound(result))
        Case "CalculateEigenvectorsVB"
            failure = CalculateEigenvectorsVB(symmetric, vectors)
            If failure = 0 Then MatrixOf = Abs(ElementOf(vectors, 1, 1))
        Case "CalculateEigendataVB"
            failure = CalculateEigendataVB(symmetric, result, vectors)
            If failure = 0 Then MatrixOf = result(LBound(result) + 1) + Abs(ElementOf(vectors, 2, 2))
        Case "CalculatePCAScoresVB"
            failure = CalculatePCAScoresVB(rows, result)
            If failure = 0 Then MatrixOf = Abs(ElementOf(result, 1, 1))
        Case Else: Exit Function
    End Select
    If failure <> 0 Then MatrixOf = "failure " & failure
End Function

' Cells of a range: read by worksheet functions into variables of this module, and written.
Private Function CellsOf(ByVal entryPoint As String, ByVal sheet As Worksheet) As Variant
    Dim values As Variant, positions As Variant, count As Variant
    Dim cell As Variant, blankName As Variant
    Dim numbers() As Double, mixed() As Variant
    Dim id As String, text As String
    Dim failure As Long
    Set cell = sheet.Range("H7")
    Select Case entryPoint
        Case "ZavrelWriteRangeVB"
            Set cell = sheet.Range("J7:K8")
            numbers = MatrixFrom(2, 1, 2, 3, 4)
            failure = ZavrelWriteRangeVB(cell, numbers)
            CellsOf = sheet.Range("K8").Value
        Case "ZavrelWriteRangeValuesVB"
            Set cell = sheet.Range("J10:K10")
            ReDim mixed(1 To 1, 1 To 2)
            mixed(1, 1) = 1
            mixed(1, 2) = "text"
            failure = ZavrelWriteRangeValuesVB(cell, mixed)
            CellsOf = sheet.Range("K10").Value
        Case "ZavrelGetCellValueCategory"
            CellsOf = ZavrelGetCellValueCategory(cell)
        Case "ZavrelGetCellValueCategoryW"
            failure = ZavrelGetCellValueCategoryW(cell, VarPtr(text))
            CellsOf = text
        Case "ZavrelTranslateFormulaVB"
            failure = ZavrelTranslateFormulaVB(StrPtr("SUM(A1,2.5)"), StrPtr("en"), StrPtr("de"), xlA1, _
                VarPtr(text))
            CellsOf = text
        Case "ZavGetCellValuesPrivate2"
            count = Calculated(sheet, "ZavGetCellValuesPrivate2(", ",1,", VariantIdString(values), _
                VariantIdString(positions))
            CellsOf = Joined(values) & " at " & Joined(positions)
        Case "ZavGetCellValuesCategoryPrivate2"
            count = Calculated(sheet, "ZavGetCellValuesCategoryPrivate2(", ",0,", "-", _
                VariantIdString(values))
            CellsOf = Joined(values)
        Case "ZavGetCellValuesNumericPrivate2"
            count = Calculated(sheet, "ZavGetCellValuesNumericPrivate2(", ",0,-1,", _
                VariantIdString(values))
            CellsOf = Joined(values)
        Case "ZavrelGetCellValuesSetArrayVB"
            failure = ZavrelGetCellValuesSetArrayVB(values, positions)
            count = Calculated(sheet, "ZavGetCellValues(", ",1")
            CellsOf = Joined(values) & " at " & Joined(positions)
        Case "ZavrelGetCellValuesSetArrayPrivateVB"
            failure = ZavrelGetCellValuesSetArrayPrivateVB(values, positions, id)
            count = Calculated(sheet, "ZavGetCellValuesPrivate(", ",1,", id)
            CellsOf = Joined(values) & " at " & Joined(positions)
        Case "ZavGetCellValuesPrivate"
            failure = ZavrelGetCellValuesSetArrayPrivateVB(values, positions, id)
            CellsOf = Calculated(sheet, "ZavGetCellValuesPrivate(", ",1,", id)
        Case "ZavrelGetCellValuesCategorySetArrayPrivateVB"
            blankName = "-"
            failure = ZavrelGetCellValuesCategorySetArrayPrivateVB(values, blankName, id)
            count = Calculated(sheet, "ZavGetCellValuesPrivate(", ",0,", id)
            CellsOf = Joined(values)
        Case "ZavrelGetCellValuesNumericSetArrayPrivateVB"
            failure = ZavrelGetCellValuesNumericSetArrayPrivateVB(values, -1, id)
            count = Calculated(sheet, "ZavGetCellValuesPrivate(", ",0,", id)
            CellsOf = Joined(values)
        Case Else: Exit Function
    End Select
    If failure <> 0 Then CellsOf = "failure " & failure
End Function

' Categories of a range, by worksheet functions into variables of this module.
Private Function CategoriesOf(ByVal entryPoint As String, ByVal sheet As Worksheet) As Variant
    Dim filled As Variant, count As Variant
    Dim id As String
    Dim failure As Long
    Select Case entryPoint
        Case "VariantIdString"
            count = Calculated(sheet, "ZavCategoryNamesPrivate2(", ",", VariantIdString(filled))
            CategoriesOf = Joined(filled)
        Case "ZavCategoryNamesPrivate2"
            CategoriesOf = Calculated(sheet, "ZavCategoryNamesPrivate2(", ",", VariantIdString(filled))
        Case "ZavCategoryIndicesPrivate2"
            count = Calculated(sheet, "ZavCategoryIndicesPrivate2(", ",", "north", _
                VariantIdString(filled))
            CategoriesOf = Joined(filled)
        Case "ZavrelCategoryNamesGetArrayVB"
            failure = ZavrelCategoryNamesGetArrayVB(filled)
            count = Calculated(sheet, "ZavCategoryNames(", "")
            CategoriesOf = Joined(filled)
        Case "ZavrelCategoryNamesSetArrayPrivateVB"
            failure = ZavrelCategoryNamesSetArrayPrivateVB(filled, id)
            count = Calculated(sheet, "ZavCategoryNamesPrivate(", ",", id)
            CategoriesOf = Joined(filled)
        Case "ZavrelCategoryNamesSetArrayPrivateWVB"
            failure = ZavrelCategoryNamesSetArrayPrivateWVB(filled, VarPtr(id))
            count = Calculated(sheet, "ZavCategoryNamesPrivate(", ",", id)
            CategoriesOf = Joined(filled)
        Case "ZavCategoryNamesPrivate"
            failure = ZavrelCategoryNamesSetArrayPrivateVB(filled, id)
            CategoriesOf = Calculated(sheet, "ZavCategoryNamesPrivate(", ",", id)
        Case "ZavrelCategoryIndicesSetArrayVB"
            failure = ZavrelCategoryIndicesSetArrayVB(filled)
            count = Calculated(sheet, "ZavCategoryIndices(", ",", "north")
            CategoriesOf = Joined(filled)
        Case "ZavrelCategoryIndicesSetArrayPrivateVB"
            failure = ZavrelCategoryIndicesSetArrayPrivateVB(filled, id)
            count = Calculated(sheet, "ZavCategoryIndicesPrivate(", ",", "north", id)
            CategoriesOf = Joined(filled)
        Case "ZavCategoryIndicesPrivate"
            failure = ZavrelCategoryIndicesSetArrayPrivateVB(filled, id)
            CategoriesOf = Calculated(sheet, "ZavCategoryIndicesPrivate(", ",", "north", id)
        Case Else: Exit Function
    End Select
    If failure <> 0 Then CategoriesOf = "failure " & failure
End Function

' Progress, and what works on open workbooks, in a new one that is closed again.
Private Function WorkbookOf(ByVal entryPoint As String) As Variant
    Dim book As Workbook
    Dim text As String
    Dim failure As Long
    Select Case entryPoint
        Case "ZavrelAnalysesMenuVB"
            failure = ZavrelAnalysesMenuVB(VarPtr(text))
            WorkbookOf = (InStr(text, "box-plots") > 0)
        Case "ZavrelBeginProgressVB"
            failure = ZavrelBeginProgressVB(StrPtr("Self-test"))
            WorkbookOf = failure
        Case "ZavrelStepProgressVB"
            WorkbookOf = ZavrelStepProgressVB(StrPtr("Step"), 0.5)
        Case "ZavrelEndProgressVB"
            failure = ZavrelEndProgressVB()
            WorkbookOf = failure
        Case "ZavrelAskForAnalysisVB"
            WorkbookOf = (ZavrelAskForAnalysisVB(Application, StrPtr("none")) <> 0)
        Case "ZavrelStoreInWorkbookVB", "ZavrelReadFromWorkbookVB", "ZavrelRemoveFromWorkbookVB", _
                "ZavrelLiftProtectionVB", "ZavrelPutBackProtectionVB", "ZavrelWriteFormulasVB", _
                "ZavrelWriteArrayFormulaVB", "ZavrelRunAnalysisVB", "ZavrelRepeatAnalysisVB"
            Set book = Workbooks.Add
            WorkbookOf = InWorkbook(entryPoint, book)
            book.Close False
    End Select
    If failure <> 0 Then WorkbookOf = "failure " & failure
End Function

Private Function InWorkbook(ByVal entryPoint As String, ByVal book As Workbook) As Variant
    Dim sheet As Worksheet
    Dim cells As Variant, value As Variant
    Dim formulas() As Variant
    Dim failure As Long, before As Long
    Set sheet = book.Worksheets(1)
    sheet.Range("A1").Value = "x"
    sheet.Range("A2:A9").Formula = "=ROW()"
    Set cells = sheet.Range("A1:A9")
    before = book.Worksheets.Count
    value = 2.5
    Select Case entryPoint
        Case "ZavrelStoreInWorkbookVB"
            failure = ZavrelStoreInWorkbookVB(book, StrPtr("name"), value)
            InWorkbook = book.Worksheets.Count - before
        Case "ZavrelReadFromWorkbookVB"
            failure = ZavrelStoreInWorkbookVB(book, StrPtr("name"), value)
            value = "nothing"
            failure = failure + ZavrelReadFromWorkbookVB(book, StrPtr("name"), value)
            InWorkbook = value
        Case "ZavrelRemoveFromWorkbookVB"
            failure = ZavrelStoreInWorkbookVB(book, StrPtr("name"), value)
            failure = failure + ZavrelRemoveFromWorkbookVB(book, StrPtr("name"))
            failure = failure + ZavrelReadFromWorkbookVB(book, StrPtr("name"), value)
            InWorkbook = IsEmpty(value)
        Case "ZavrelLiftProtectionVB"
            sheet.Protect "secret"
            failure = ZavrelLiftProtectionVB(sheet, StrPtr("secret"), value)
            InWorkbook = sheet.ProtectContents
        Case "ZavrelPutBackProtectionVB"
            sheet.Protect "secret"
            failure = ZavrelLiftProtectionVB(sheet, StrPtr("secret"), value)
            failure = failure + ZavrelPutBackProtectionVB(CLng(value))
            InWorkbook = sheet.ProtectContents
        Case "ZavrelWriteFormulasVB"
            ReDim formulas(1 To 1, 1 To 2)
            formulas(1, 1) = "=1+2"
            formulas(1, 2) = "text"
            failure = ZavrelWriteFormulasVB(cells, formulas)
            InWorkbook = sheet.Range("A1").Value & sheet.Range("B1").Value
        Case "ZavrelWriteArrayFormulaVB"
            Set cells = sheet.Range("C1:C2")
            failure = ZavrelWriteArrayFormulaVB(cells, StrPtr("={1;2}*2"))
            InWorkbook = sheet.Range("C2").Value
        Case "ZavrelRunAnalysisVB"
            failure = ZavrelRunAnalysisVB(cells, StrPtr("percentiles"), 0)
            InWorkbook = book.Worksheets.Count - before
        Case "ZavrelRepeatAnalysisVB"
            failure = ZavrelRunAnalysisVB(cells, StrPtr("percentiles"), 0)
            failure = failure + ZavrelRepeatAnalysisVB(book)
            InWorkbook = book.Worksheets.Count - before
    End Select
    If failure <> 0 Then InWorkbook = "failure " & failure
End Function

' Versions, failures, and announcing. The applications 8 and 9 have no functions of their own.
Private Function SessionOf(ByVal entryPoint As String, ByVal sheet As Worksheet) As Variant
    Const LanguageOfUserInterface As Long = 2 ' msoLanguageIDUI
    Dim className As String, place As String, message As String
    Dim notSymmetric() As Double
    Dim result As Variant
    Dim languageId As Long, known As Long
    languageId = Application.LanguageSettings.LanguageID(LanguageOfUserInterface)
    Select Case entryPoint
        Case "ZavrelFuncsVersion"
            SessionOf = ZavrelFuncsVersion()
        Case "ZavrelGetExceptionInfoVB"
            notSymmetric = MatrixFrom(2, 1, 2, 3, 4)
            known = ZavrelGetExceptionInfoVB(CalculateEigenvaluesVB(notSymmetric, result), _
                VarPtr(className), VarPtr(place), VarPtr(message))
            SessionOf = (known = 1 And message <> "")
        Case "ZavrelShowHelpVB"
            SessionOf = (ZavrelShowHelpVB(StrPtr("../")) <> 0)
        Case "InitializeXlaInformationVB"
            InitializeXlaInformationVB Application, Nothing, 8, 0, languageId, 0, 0
            SessionOf = sheet.Evaluate("ZavMean(1,2,3)")
        Case "InitializeXlaInformationW"
            InitializeXlaInformationW Application, Nothing, 9, 0, languageId, 0, 0
            SessionOf = sheet.Evaluate("ZavMean(1,2,3)")
        Case "UninitializeXlaInformation"
            UninitializeXlaInformation 8
            UninitializeXlaInformation 9
            SessionOf = sheet.Evaluate("ZavMean(1,2,3)")
    End Select
End Function

' A worksheet function of the data's cells: further arguments as they stand, then texts in quotes.
Private Function Calculated(ByVal sheet As Worksheet, ByVal beginning As String, _
        ByVal between As String, ParamArray texts() As Variant) As Variant
    Dim formula As String
    Dim index As Long
    formula = beginning & DataCells & between
    For index = 0 To UBound(texts)
        If index > 0 Then formula = formula & ","
        formula = formula & """" & texts(index) & """"
    Next index
    Calculated = sheet.Evaluate(formula & ")")
End Function

Private Function NumbersOf(ParamArray values() As Variant) As Double()
    Dim numbers() As Double
    Dim index As Long
    ReDim numbers(1 To UBound(values) + 1)
    For index = 0 To UBound(values)
        numbers(index + 1) = values(index)
    Next index
    NumbersOf = numbers
End Function

' Row by row.
Private Function MatrixFrom(ByVal width As Long, ParamArray values() As Variant) As Double()
    Dim numbers() As Double
    Dim index As Long
    ReDim numbers(1 To (UBound(values) + 1) \ width, 1 To width)
    For index = 0 To UBound(values)
        numbers(index \ width + 1, index Mod width + 1) = values(index)
    Next index
    MatrixFrom = numbers
End Function

' By row and column, counted from 1; what stands in the matrix's place after a failure, as a text.
Private Function ElementOf(ByVal matrix As Variant, ByVal row As Long, ByVal column As Long) As Variant
    If IsError(matrix) Then
        ElementOf = "failure " & CLng(matrix)
    Else
        ElementOf = matrix(LBound(matrix, 1) + row - 1, LBound(matrix, 2) + column - 1)
    End If
End Function

Private Function Joined(ByVal values As Variant) As String
    Dim index As Long
    If Not IsArray(values) Then
        Joined = "nothing was filled in"
        Exit Function
    End If
    For index = LBound(values) To UBound(values)
        If index > LBound(values) Then Joined = Joined & ";"
        Joined = Joined & values(index)
    Next index
End Function

Private Function NumberOrStatus(ByVal status As Long, ByVal result As Double) As Variant
    If status <> 0 Or ZavrelReasonOf(result) <> "" Then
        NumberOrStatus = "status " & status & ": " & ZavrelReasonOf(result)
    Else
        NumberOrStatus = result
    End If
End Function
