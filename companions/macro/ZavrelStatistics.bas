Attribute VB_Name = "ZavrelStatistics"
' Statistics for macros, of a range or an array of any shape. Empty cells, text and Boolean values are
' ignored; an error value among the data, or a statistic that does not exist, raises an error.
'
'   Debug.Print ZavrelMeanOf(Range("B2:B154"))
'   Debug.Print ZavrelPercentileOf(Array(3, 1, 2), 0.9)
Option Explicit

Public Function ZavrelMinOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelMinOf")
    status = ZavrelMinVB(numbers, result)
    ZavrelMinOf = ZavrelNumberOrError(status, result, "ZavrelMinOf")
End Function

Public Function ZavrelMaxOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelMaxOf")
    status = ZavrelMaxVB(numbers, result)
    ZavrelMaxOf = ZavrelNumberOrError(status, result, "ZavrelMaxOf")
End Function

Public Function ZavrelMeanOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelMeanOf")
    status = ZavrelMeanVB(numbers, result)
    ZavrelMeanOf = ZavrelNumberOrError(status, result, "ZavrelMeanOf")
End Function

Public Function ZavrelStdDevOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelStdDevOf")
    status = ZavrelStdDevVB(numbers, result)
    ZavrelStdDevOf = ZavrelNumberOrError(status, result, "ZavrelStdDevOf")
End Function

Public Function ZavrelStdDevPOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelStdDevPOf")
    status = ZavrelStdDevPVB(numbers, result)
    ZavrelStdDevPOf = ZavrelNumberOrError(status, result, "ZavrelStdDevPOf")
End Function

Public Function ZavrelVarianceOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelVarianceOf")
    status = ZavrelVarianceVB(numbers, result)
    ZavrelVarianceOf = ZavrelNumberOrError(status, result, "ZavrelVarianceOf")
End Function

Public Function ZavrelVariancePOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelVariancePOf")
    status = ZavrelVariancePVB(numbers, result)
    ZavrelVariancePOf = ZavrelNumberOrError(status, result, "ZavrelVariancePOf")
End Function

Public Function ZavrelSkewnessOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelSkewnessOf")
    status = ZavrelSkewnessVB(numbers, result)
    ZavrelSkewnessOf = ZavrelNumberOrError(status, result, "ZavrelSkewnessOf")
End Function

Public Function ZavrelSkewnessPOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelSkewnessPOf")
    status = ZavrelSkewnessPVB(numbers, result)
    ZavrelSkewnessPOf = ZavrelNumberOrError(status, result, "ZavrelSkewnessPOf")
End Function

Public Function ZavrelKurtosisOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelKurtosisOf")
    status = ZavrelKurtosisVB(numbers, result)
    ZavrelKurtosisOf = ZavrelNumberOrError(status, result, "ZavrelKurtosisOf")
End Function

Public Function ZavrelKurtosisPOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelKurtosisPOf")
    status = ZavrelKurtosisPVB(numbers, result)
    ZavrelKurtosisPOf = ZavrelNumberOrError(status, result, "ZavrelKurtosisPOf")
End Function

Public Function ZavrelSumSqOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelSumSqOf")
    status = ZavrelSumSqVB(numbers, result)
    ZavrelSumSqOf = ZavrelNumberOrError(status, result, "ZavrelSumSqOf")
End Function

Public Function ZavrelSumDevSqOf(ByVal values As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelSumDevSqOf")
    status = ZavrelSumDevSqVB(numbers, result)
    ZavrelSumDevSqOf = ZavrelNumberOrError(status, result, "ZavrelSumDevSqOf")
End Function

' discrete: if omitted, depends on the data; True for values that are counts or codes.
Public Function ZavrelModeOf(ByVal values As Variant, Optional ByVal discrete As Variant) As Double
    Dim numbers() As Double, result As Double, status As Long, setting As Integer
    numbers = ZavrelNumbersIn(values, "ZavrelModeOf")
    setting = -1
    If Not IsMissing(discrete) Then setting = IIf(discrete, 1, 0)
    status = ZavrelModeVB(numbers, setting, result)
    ZavrelModeOf = ZavrelNumberOrError(status, result, "ZavrelModeOf")
End Function

' p from 0 to 1; method: -1 depends on the data, 0 to 5 as in ZavPercentile.
Public Function ZavrelPercentileOf(ByVal values As Variant, ByVal p As Double, _
        Optional ByVal method As Integer = -1) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelPercentileOf")
    SortAscending numbers
    status = ZavrelPercentileVB(numbers, p, method, result)
    ZavrelPercentileOf = ZavrelNumberOrError(status, result, "ZavrelPercentileOf")
End Function

' quartile: 0 minimum, 1, 2 median, 3, 4 maximum.
Public Function ZavrelQuartileOf(ByVal values As Variant, ByVal quartile As Double, _
        Optional ByVal method As Integer = -1) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelQuartileOf")
    SortAscending numbers
    status = ZavrelQuartileVB(numbers, quartile, method, result)
    ZavrelQuartileOf = ZavrelNumberOrError(status, result, "ZavrelQuartileOf")
End Function

Public Function ZavrelMedianOf(ByVal values As Variant, Optional ByVal method As Integer = -1) As Double
    Dim numbers() As Double, result As Double, status As Long
    numbers = ZavrelNumbersIn(values, "ZavrelMedianOf")
    SortAscending numbers
    status = ZavrelMedianVB(numbers, method, result)
    ZavrelMedianOf = ZavrelNumberOrError(status, result, "ZavrelMedianOf")
End Function

' Two series of numbers, paired element by element, without missing values.
Public Function ZavrelCovarianceOf(ByVal x As Variant, ByVal y As Variant) As Double
    Dim first() As Double, second() As Double, result As Double, status As Long
    PairOfSeries x, y, first, second, "ZavrelCovarianceOf"
    status = ZavrelCovarianceVB(first, second, result)
    ZavrelCovarianceOf = ZavrelNumberOrError(status, result, "ZavrelCovarianceOf")
End Function

Public Function ZavrelCovariancePOf(ByVal x As Variant, ByVal y As Variant) As Double
    Dim first() As Double, second() As Double, result As Double, status As Long
    PairOfSeries x, y, first, second, "ZavrelCovariancePOf"
    status = ZavrelCovariancePVB(first, second, result)
    ZavrelCovariancePOf = ZavrelNumberOrError(status, result, "ZavrelCovariancePOf")
End Function

Public Function ZavrelCorrelationOf(ByVal x As Variant, ByVal y As Variant) As Double
    Dim first() As Double, second() As Double, result As Double, status As Long
    PairOfSeries x, y, first, second, "ZavrelCorrelationOf"
    status = ZavrelCorrelationCoeffVB(first, second, result)
    ZavrelCorrelationOf = ZavrelNumberOrError(status, result, "ZavrelCorrelationOf")
End Function

' The numbers of a range or an array, one after the other.
Public Function ZavrelNumbersIn(ByVal values As Variant, ByVal source As String) As Double()
    Dim cells As Variant, cell As Variant
    Dim numbers() As Double
    Dim count As Long
    cells = ZavrelCellsIn(values, source)
    For Each cell In cells
        If IsError(cell) Then ZavrelRaise source, source & ": " & _
            ZavrelText("one of the values is an error.", "einer der Werte ist ein Fehlerwert.")
        If ZavrelIsNumber(cell) Then count = count + 1
    Next cell
    If count = 0 Then ZavrelRaise source, source & ": " & _
        ZavrelText("there are no numbers among the values.", "unter den Werten ist keine Zahl.")
    ReDim numbers(1 To count)
    count = 0
    For Each cell In cells
        If ZavrelIsNumber(cell) Then
            count = count + 1
            numbers(count) = cell
        End If
    Next cell
    ZavrelNumbersIn = numbers
End Function

' An array of the cells' values, from a range, an array or a single value.
Public Function ZavrelCellsIn(ByVal values As Variant, ByVal source As String) As Variant
    If IsObject(values) Then
        If values.Areas.Count > 1 Then ZavrelRaise source, source & ": " & _
            ZavrelText("one range of cells at a time.", "nur ein Zellbereich auf einmal.")
        ZavrelCellsIn = values.Value2
    Else
        ZavrelCellsIn = values
    End If
    If Not IsArray(ZavrelCellsIn) Then ZavrelCellsIn = Array(ZavrelCellsIn)
End Function

Public Function ZavrelIsNumber(ByVal cell As Variant) As Boolean
    Select Case VarType(cell)
        Case vbDouble, vbSingle, vbInteger, vbLong, vbLongLong, vbByte, vbCurrency, vbDecimal, vbDate
            ZavrelIsNumber = True
    End Select
End Function

' Both series must be complete and equally long; a gap would shift the pairs.
Private Sub PairOfSeries(ByVal x As Variant, ByVal y As Variant, ByRef first() As Double, _
        ByRef second() As Double, ByVal source As String)
    first = AllNumbersIn(x, source)
    second = AllNumbersIn(y, source)
    If UBound(first) <> UBound(second) Then
        ZavrelRaise source, source & ": " & ZavrelText( _
            "the series have " & UBound(first) & " and " & UBound(second) & " values.", _
            "die Reihen haben " & UBound(first) & " und " & UBound(second) & " Werte.")
    End If
    If UBound(first) < 2 Then ZavrelRaise source, source & ": " & _
        ZavrelText("one pair of values is not enough.", "ein Wertepaar reicht nicht.")
End Sub

Private Function AllNumbersIn(ByVal values As Variant, ByVal source As String) As Double()
    Dim cell As Variant
    For Each cell In ZavrelCellsIn(values, source)
        If Not ZavrelIsNumber(cell) Then ZavrelRaise source, source & ": " & _
            ZavrelText("a value of a series is missing.", "in einer Reihe fehlt ein Wert.")
    Next cell
    AllNumbersIn = ZavrelNumbersIn(values, source)
End Function

' Shell sort, which needs no recursion and no second array.
Private Sub SortAscending(ByRef numbers() As Double)
    Dim gap As Long, index As Long, hole As Long
    Dim number As Double
    gap = (UBound(numbers) - LBound(numbers) + 1) \ 2
    Do While gap > 0
        For index = LBound(numbers) + gap To UBound(numbers)
            number = numbers(index)
            hole = index
            Do While hole - gap >= LBound(numbers)
                If numbers(hole - gap) <= number Then Exit Do
                numbers(hole) = numbers(hole - gap)
                hole = hole - gap
            Loop
            numbers(hole) = number
        Next index
        gap = gap \ 2
    Loop
End Sub
