Attribute VB_Name = "ZavrelCompanion"
' Switches the worksheet functions of Zavrel Functions on while this add-in is open, and off when it
' closes. Excel runs Auto_Open and Auto_Close of an add-in automatically. In a workbook that is not an
' add-in they do nothing, since closing it would switch the functions off for all workbooks.
Option Explicit

Private Const AddInFile As String = "ZavrelFuncs8_x64.xll"
Private Const ApplicationId As Integer = 5
Private Const CompanionVersion As String = "8.0"
Private Const LanguageOfUserInterface As Long = 2 ' msoLanguageIDUI

Public Sub Auto_Open()
    Dim folder As String
    Dim workbookFile As String
    Dim helpFile As String
    Dim version As String
    Dim languageId As Long
    Dim reason As String
    If Not ThisWorkbook.IsAddin Then Exit Sub
    On Error GoTo Failed
    folder = LoadedAddInFolder()
    If folder = "" Then folder = LoadAddInNear(ThisWorkbook.Path)
    workbookFile = ThisWorkbook.FullName
    languageId = Application.LanguageSettings.LanguageID(LanguageOfUserInterface)
    helpFile = HelpFileIn(folder, languageId)
    version = CompanionVersion
    InitializeXlaInformationVB Application, Nothing, ApplicationId, StrPtr(workbookFile), _
        languageId, StrPtr(version), StrPtr(helpFile)
    Exit Sub
Failed:
    reason = Err.Description
    MsgBox ZavrelText("The Zavrel functions could not be switched on: ", _
        "Die Zavrel-Funktionen konnten nicht eingeschaltet werden: ") & reason, vbExclamation, _
        "Zavrel Functions"
End Sub

Public Sub Auto_Close()
    If Not ThisWorkbook.IsAddin Then Exit Sub
    On Error Resume Next ' closing never stops because of this
    UninitializeXlaInformation ApplicationId
End Sub

' The folder, with a final backslash, of the add-in that Excel has loaded; "" if it has loaded none.
Private Function LoadedAddInFolder() As String
    Dim functions As Variant
    Dim row As Long
    Dim library As String
    functions = Application.RegisteredFunctions ' Null without any
    If Not IsArray(functions) Then Exit Function
    For row = LBound(functions, 1) To UBound(functions, 1)
        library = functions(row, LBound(functions, 2))
        If LCase$(Right$(library, Len(AddInFile) + 1)) = "\" & LCase$(AddInFile) Then
            LoadedAddInFolder = Left$(library, Len(library) - Len(AddInFile))
            Exit Function
        End If
    Next row
End Function

' The add-in is in the folder of this workbook, or in the folder that contains the folder macro.
Private Function LoadAddInNear(ByVal workbookFolder As String) As String
    Dim folder As Variant
    For Each folder In Array(workbookFolder & "\", Left$(workbookFolder, InStrRev(workbookFolder, "\")))
        If Application.RegisterXLL(folder & AddInFile) Then
            LoadAddInNear = folder
            Exit Function
        End If
    Next folder
    Err.Raise vbObjectError + 8000, "ZavrelCompanion", _
        ZavrelText(AddInFile & " is neither loaded nor in the folder " & workbookFolder & ".", _
            AddInFile & " ist weder geladen noch im Ordner " & workbookFolder & ".")
End Function

' The compiled help in this language, otherwise the English one in the add-in's folder; "" if there is none.
Private Function HelpFileIn(ByVal folder As String, ByVal languageId As Long) As String
    Const German As Long = 7
    If (languageId And &H3FF) = German Then
        HelpFileIn = FileOrNothing(folder & "help\de\ZavrelFuncs8_x64.de.chm")
    End If
    If HelpFileIn = "" Then HelpFileIn = FileOrNothing(folder & "ZavrelFuncs8_x64.chm")
End Function

' The file if it exists, otherwise "". Dir$ would fail for a path with characters outside the ANSI code page.
Private Function FileOrNothing(ByVal file As String) As String
    Dim there As Boolean
    On Error Resume Next ' where scripting is blocked, the functions come without help
    there = CreateObject("Scripting.FileSystemObject").FileExists(file)
    If there Then FileOrNothing = file
End Function
