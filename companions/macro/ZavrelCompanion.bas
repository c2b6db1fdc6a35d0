Attribute VB_Name = "ZavrelCompanion"
' Switches the worksheet functions of Zavrel Functions on while this add-in is open, and off when it
' closes. Excel runs Auto_Open and Auto_Close of an add-in by itself.
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
    On Error GoTo Failed
    folder = LoadedAddInFolder()
    If folder = "" Then folder = LoadAddInBeside(ThisWorkbook.Path)
    workbookFile = ThisWorkbook.FullName
    languageId = Application.LanguageSettings.LanguageID(LanguageOfUserInterface)
    helpFile = HelpFileIn(folder, languageId)
    version = CompanionVersion
    InitializeXlaInformationVB Application, Nothing, ApplicationId, StrPtr(workbookFile), _
        languageId, StrPtr(version), StrPtr(helpFile)
    Exit Sub
Failed:
    MsgBox "The Zavrel functions could not be switched on: " & Err.Description, vbExclamation, _
        "Zavrel Functions"
End Sub

Public Sub Auto_Close()
    On Error Resume Next ' closing never stops because of this
    UninitializeXlaInformation ApplicationId
End Sub

' The folder, with its last backslash, of the add-in that Excel has loaded; "" when it has not.
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

Private Function LoadAddInBeside(ByVal workbookFolder As String) As String
    Dim folder As String
    folder = workbookFolder & "\"
    If Not Application.RegisterXLL(folder & AddInFile) Then
        Err.Raise vbObjectError + 8000, "ZavrelCompanion", _
            AddInFile & " is neither loaded nor in the folder " & folder & "."
    End If
    LoadAddInBeside = folder
End Function

' The compiled help of the language, else the English one beside the add-in; "" without any.
Private Function HelpFileIn(ByVal folder As String, ByVal languageId As Long) As String
    Const German As Long = 7
    Dim languageFolder As String
    Dim found As String
    If (languageId And &H3FF) = German Then
        languageFolder = folder & "help\de\"
        found = Dir$(languageFolder & "Zavrel*.chm")
        If found <> "" Then
            HelpFileIn = languageFolder & found
            Exit Function
        End If
    End If
    found = Dir$(folder & "Zavrel*.chm")
    If found <> "" Then HelpFileIn = folder & found
End Function
