Attribute VB_Name = "ZavrelMatrices"
' Matrices for macros: a range, or an array with two dimensions, that contains only numbers. Results are
' arrays with indices from 1, which can be assigned to a range of their size:
'
'   Range("F2:I5").Value = ZavrelCorrelationMatrixOf(Range("A2:D151"))
Option Explicit

' The covariances of the columns of data, with observations in rows.
Public Function ZavrelCovarianceMatrixOf(ByVal data As Variant, Optional ByVal useRanks As Boolean, _
        Optional ByVal sampleDivisor As Boolean = True) As Variant
    Const Source As String = "ZavrelCovarianceMatrixOf"
    Dim numbers() As Double, result As Variant
    numbers = ZavrelMatrixIn(data, Source)
    ZavrelRaiseFailure CalculateCovarianceMatrixVB(useRanks, sampleDivisor, False, numbers, result), Source
    ZavrelCovarianceMatrixOf = result
End Function

' The correlation coefficients; with useRanks, those of the ranks.
Public Function ZavrelCorrelationMatrixOf(ByVal data As Variant, _
        Optional ByVal useRanks As Boolean) As Variant
    Const Source As String = "ZavrelCorrelationMatrixOf"
    Dim numbers() As Double, result As Variant
    numbers = ZavrelMatrixIn(data, Source)
    ZavrelRaiseFailure CalculateCorrelationMatrixVB(useRanks, True, False, numbers, result), Source
    ZavrelCorrelationMatrixOf = result
End Function

Public Function ZavrelMatrixSumOf(ByVal a As Variant, ByVal b As Variant) As Variant
    Const Source As String = "ZavrelMatrixSumOf"
    Dim first() As Double, second() As Double
    first = ZavrelMatrixIn(a, Source)
    second = ZavrelMatrixIn(b, Source)
    ZavrelMatrixSumOf = MatrixOrError(MatrixAddVB(first, second), Source)
End Function

Public Function ZavrelMatrixProductOf(ByVal a As Variant, ByVal b As Variant) As Variant
    Const Source As String = "ZavrelMatrixProductOf"
    Dim first() As Double, second() As Double
    first = ZavrelMatrixIn(a, Source)
    second = ZavrelMatrixIn(b, Source)
    ZavrelMatrixProductOf = MatrixOrError(MatrixMultiplyVB(first, second), Source)
End Function

Public Function ZavrelMatrixInverseOf(ByVal a As Variant) As Variant
    Const Source As String = "ZavrelMatrixInverseOf"
    Dim numbers() As Double
    numbers = ZavrelMatrixIn(a, Source)
    ZavrelMatrixInverseOf = MatrixOrError(MatrixInverseVB(numbers), Source)
End Function

Public Function ZavrelMatrixDeterminantOf(ByVal a As Variant) As Double
    Const Source As String = "ZavrelMatrixDeterminantOf"
    Dim numbers() As Double
    numbers = ZavrelMatrixIn(a, Source)
    ZavrelMatrixDeterminantOf = ZavrelNumberOrError(0, MatrixDeterminantVB(numbers), Source)
End Function

' The eigenvalues of a symmetric matrix, largest first, as an array with one dimension.
Public Function ZavrelEigenvaluesOf(ByVal matrix As Variant) As Variant
    Const Source As String = "ZavrelEigenvaluesOf"
    Dim numbers() As Double, result As Variant
    numbers = ZavrelMatrixIn(matrix, Source)
    ZavrelRaiseFailure CalculateEigenvaluesVB(numbers, result), Source
    ZavrelEigenvaluesOf = result
End Function

' Its eigenvectors, as columns in the order of the eigenvalues.
Public Function ZavrelEigenvectorsOf(ByVal matrix As Variant) As Variant
    Const Source As String = "ZavrelEigenvectorsOf"
    Dim numbers() As Double, result As Variant
    numbers = ZavrelMatrixIn(matrix, Source)
    ZavrelRaiseFailure CalculateEigenvectorsVB(numbers, result), Source
    ZavrelEigenvectorsOf = result
End Function

' The principal-component scores of the rows of data, which are used as they are.
Public Function ZavrelComponentScoresOf(ByVal data As Variant) As Variant
    Const Source As String = "ZavrelComponentScoresOf"
    Dim numbers() As Double, result As Variant
    numbers = ZavrelMatrixIn(data, Source)
    ZavrelRaiseFailure CalculatePCAScoresVB(numbers, result), Source
    ZavrelComponentScoresOf = result
End Function

' A range or an array as a matrix of numbers with indices from 1; an array with one dimension is one row.
Public Function ZavrelMatrixIn(ByVal values As Variant, ByVal source As String) As Double()
    Dim cells As Variant
    Dim numbers() As Double
    Dim row As Long, column As Long
    cells = ZavrelCellsIn(values, source)
    Select Case DimensionsOf(cells)
        Case 1
            ReDim numbers(1 To 1, 1 To UBound(cells) - LBound(cells) + 1)
            For column = 1 To UBound(numbers, 2)
                numbers(1, column) = NumberAt(cells(LBound(cells) + column - 1), 1, column, source)
            Next column
        Case 2
            ReDim numbers(1 To UBound(cells, 1) - LBound(cells, 1) + 1, _
                1 To UBound(cells, 2) - LBound(cells, 2) + 1)
            For column = 1 To UBound(numbers, 2)
                For row = 1 To UBound(numbers, 1)
                    numbers(row, column) = NumberAt(cells(LBound(cells, 1) + row - 1, _
                        LBound(cells, 2) + column - 1), row, column, source)
                Next row
            Next column
        Case Else
            ZavrelRaise source, source & ": " & ZavrelText("a matrix has rows and columns.", _
                "eine Matrix hat Zeilen und Spalten.")
    End Select
    ZavrelMatrixIn = numbers
End Function

Private Function NumberAt(ByVal cell As Variant, ByVal row As Long, ByVal column As Long, _
        ByVal source As String) As Double
    If Not ZavrelIsNumber(cell) Then
        ZavrelRaise source, source & ": " & ZavrelText( _
            "row " & row & ", column " & column & " holds no number.", _
            "in Zeile " & row & ", Spalte " & column & " steht keine Zahl.")
    End If
    NumberAt = cell
End Function

' The matrix that an entry point returned; raises an error if it returned a failure instead.
Private Function MatrixOrError(ByVal result As Variant, ByVal source As String) As Variant
    If IsError(result) Then ZavrelRaiseFailure CLng(result), source
    MatrixOrError = result
End Function

Private Function DimensionsOf(ByRef cells As Variant) As Long
    Dim bound As Long
    On Error GoTo Counted
    Do
        bound = UBound(cells, DimensionsOf + 1)
        DimensionsOf = DimensionsOf + 1
    Loop
Counted:
End Function
