Attribute VB_Name = "ZavrelErrors"
' Turns failures of the entry points into errors of the macro language, with a text for the user.
Option Explicit

' The number of all errors that these modules raise.
Public Const ZavrelErrorNumber As Long = vbObjectError + 8001

' A number, and its bits.
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
        message = ZavrelText( _
            "The add-in reports failure " & failureNumber & ", whose reason it no longer knows.", _
            "Das Add-in meldet Fehler " & failureNumber & ", dessen Grund es nicht mehr kennt.")
    ElseIf message = "" Then
        message = className & " in " & place
    End If
    ZavrelRaise source, message
End Sub

Public Sub ZavrelRaise(ByVal source As String, ByVal message As String)
    Err.Raise ZavrelErrorNumber, source, message
End Sub

' The text in the language of Excel's user interface, which the companion also announces. Modules are
' imported in the ANSI code page, so the texts use only ASCII.
Public Function ZavrelText(ByVal english As String, ByVal german As String) As String
    Const LanguageOfUserInterface As Long = 2 ' msoLanguageIDUI
    Const GermanLanguage As Long = 7
    ZavrelText = english
    If (Application.LanguageSettings.LanguageID(LanguageOfUserInterface) And &H3FF) = GermanLanguage Then
        ZavrelText = german
    End If
End Function

' Returns a result that is an ordinary number; raises an error for any other result.
Public Function ZavrelNumberOrError(ByVal status As Long, ByVal result As Double, _
        ByVal source As String) As Double
    Dim reason As String
    reason = ZavrelReasonOf(result)
    If reason = "" And status <> 0 Then
        reason = ZavrelText("there is no result", "es gibt kein Ergebnis") & " (status " & status & ")"
    End If
    If reason <> "" Then ZavrelRaise source, source & ": " & reason & "."
    ZavrelNumberOrError = result
End Function

' The reason why a result is not an ordinary number; "" if it is one.
Public Function ZavrelReasonOf(ByVal result As Double) As String
    Const Exponent As Long = &H7FF00000
    Dim given As NumberRecord
    Dim bits As BitsRecord
    given.Number = result
    LSet bits = given
    If (bits.High And Exponent) <> Exponent Then Exit Function
    If bits.High <> -1 Then
        If bits.Low = 0 And (bits.High And &HFFFFF) = 0 Then
            ZavrelReasonOf = TooLarge()
        Else
            ZavrelReasonOf = NoResult()
        End If
        Exit Function
    End If
    Select Case bits.Low
        Case -8: ZavrelReasonOf = ZavrelText("the result is empty", "das Ergebnis ist leer")
        Case -9: ZavrelReasonOf = ZavrelText("there are no data", "es gibt keine Daten")
        Case -14: ZavrelReasonOf = TooLarge()
        Case -15: ZavrelReasonOf = ZavrelText("there are too few values, or they do not differ", _
            "es sind zu wenige Werte, oder sie sind alle gleich")
        Case Else: ZavrelReasonOf = NoResult()
    End Select
End Function

Private Function TooLarge() As String
    TooLarge = ZavrelText("the result is too large", "das Ergebnis liegt jenseits aller Zahlen")
End Function

Private Function NoResult() As String
    NoResult = ZavrelText("there is no result for these arguments", _
        "zu diesen Argumenten gibt es kein Ergebnis")
End Function
