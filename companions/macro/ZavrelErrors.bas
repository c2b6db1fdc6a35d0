Attribute VB_Name = "ZavrelErrors"
' Turns what the entry points answer into errors of the macro language, with a text to show.
Option Explicit

' The number of every error that these modules raise.
Public Const ZavrelErrorNumber As Long = vbObjectError + 8001

' One number, and the bits of it.
Private Type NumberRecord
    Number As Double
End Type
Private Type BitsRecord
    Low As Long
    High As Long
End Type

' Raises the failure that the add-in recorded under this number; nothing for 0.
Public Sub ZavrelRaiseFailure(ByVal failureNumber As Long, ByVal source As String)
    Dim className As String
    Dim place As String
    Dim message As String
    If failureNumber = 0 Then Exit Sub
    If ZavrelGetExceptionInfoVB(failureNumber, VarPtr(className), VarPtr(place), _
            VarPtr(message)) = 0 Then
        message = "The add-in reports failure " & failureNumber & ", whose reason it no longer knows."
    ElseIf message = "" Then
        message = className & " in " & place
    End If
    ZavrelRaise source, message
End Sub

Public Sub ZavrelRaise(ByVal source As String, ByVal message As String)
    Err.Raise ZavrelErrorNumber, source, message
End Sub

' Passes on a result that is an ordinary number; raises an error for any other.
Public Function ZavrelNumberOrError(ByVal status As Long, ByVal result As Double, _
        ByVal source As String) As Double
    Dim reason As String
    reason = ZavrelReasonOf(result)
    If reason = "" And status <> 0 Then reason = "there is no result (status " & status & ")"
    If reason <> "" Then ZavrelRaise source, source & ": " & reason & "."
    ZavrelNumberOrError = result
End Function

' Why a result is no ordinary number; "" for one that is.
Public Function ZavrelReasonOf(ByVal result As Double) As String
    Const Exponent As Long = &H7FF00000
    Dim given As NumberRecord
    Dim bits As BitsRecord
    given.Number = result
    LSet bits = given
    If (bits.High And Exponent) <> Exponent Then Exit Function
    ZavrelReasonOf = "there is no result for these arguments"
    If bits.High <> -1 Then
        If bits.Low = 0 And (bits.High And &HFFFFF) = 0 Then ZavrelReasonOf = "the result is too large"
        Exit Function
    End If
    Select Case bits.Low
        Case -8: ZavrelReasonOf = "the result is empty"
        Case -9: ZavrelReasonOf = "there are no data"
        Case -14: ZavrelReasonOf = "the result is too large"
        Case -15: ZavrelReasonOf = "there are too few values, or they do not differ"
    End Select
End Function
