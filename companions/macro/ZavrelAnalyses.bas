Attribute VB_Name = "ZavrelAnalyses"
' The analyses of the ribbon's tab "Zavrel": each asks for its data and adds a sheet with live formulas.
Option Explicit

' An analysis of the menu; its name is the tag of the item.
Public Sub ZavrelAnalysisChosen(ByVal control As Object)
    Dim analysis As String
    On Error GoTo Failed
    analysis = control.Tag
    ZavrelRaiseFailure ZavrelAskForAnalysisVB(Application, StrPtr(analysis)), "ZavrelAnalyses"
    Exit Sub
Failed:
    ShowProblem Err.Description
End Sub

' The latest analysis of the active workbook once more, on the same cells.
Public Sub ZavrelRepeatChosen(ByVal control As Object)
    On Error GoTo Failed
    If ActiveWorkbook Is Nothing Then Exit Sub
    ZavrelRaiseFailure ZavrelRepeatAnalysisVB(ActiveWorkbook), "ZavrelAnalyses"
    Exit Sub
Failed:
    ShowProblem Err.Description
End Sub

Public Sub ZavrelHelpChosen(ByVal control As Object)
    On Error GoTo Failed
    ZavrelRaiseFailure ZavrelShowHelpVB(0), "ZavrelAnalyses"
    Exit Sub
Failed:
    ShowProblem Err.Description
End Sub

Public Sub ZavrelAboutChosen(ByVal control As Object)
    On Error GoTo Failed
    MsgBox ZavrelText("Zavrel Functions, statistics for Excel. Version of the add-in: ", _
        "Zavrel-Funktionen, Statistik in Excel. Version des Add-ins: ") & ZavrelFuncsVersion() & ".", _
        vbInformation, "Zavrel Functions"
    Exit Sub
Failed:
    ShowProblem Err.Description
End Sub

' The menu of the analyses, in the language of Excel's user interface.
Public Sub ZavrelAnalysesMenu(ByVal control As Object, ByRef content As Variant)
    Dim menu As String
    On Error GoTo Failed
    ZavrelRaiseFailure ZavrelAnalysesMenuVB(VarPtr(menu)), "ZavrelAnalyses"
    content = menu
    Exit Sub
Failed:
    content = "<menu xmlns=""http://schemas.microsoft.com/office/2009/07/customui""/>"
End Sub

' The labels of the tab's other parts, by their ids.
Public Sub ZavrelLabel(ByVal control As Object, ByRef label As Variant)
    Select Case control.ID
        Case "zavrelAnalyses": label = ZavrelText("Analyses", "Auswertungen")
        Case "zavrelAnalysisMenu": label = ZavrelText("Analyses", "Auswertungen")
        Case "zavrelRepeat": label = ZavrelText("Repeat", "Wiederholen")
        Case "zavrelInformation": label = ZavrelText("Information", "Informationen")
        Case "zavrelHelp": label = ZavrelText("Help", "Hilfe")
        Case "zavrelAbout": label = ZavrelText("About", "Info")
    End Select
End Sub

Private Sub ShowProblem(ByVal reason As String)
    MsgBox reason, vbExclamation, "Zavrel Functions"
End Sub
