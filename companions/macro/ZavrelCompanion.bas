Attribute VB_Name = "ZavrelCompanion"
' Switches the worksheet functions of Zavrel Functions on while this add-in is open, and off when it
' closes. Excel runs Auto_Open and Auto_Close of an add-in automatically. In a workbook that is not an
' add-in they do nothing, since closing it would switch the functions off for all workbooks.
Option Explicit

Private Const AddInFile As String = "ZavrelFuncs8_x64.xll"
Private Const ApplicationId As Integer = 5
Private Const CompanionVersion As String = "8.0"
Private Const LanguageOfUserInterface As Long = 2 ' msoLanguageIDUI

Private Declare PtrSafe Function GetModuleHandleW Lib "kernel32" (ByVal name As LongPtr) As LongPtr
Private Declare PtrSafe Function GetModuleFileNameW Lib "kernel32" ( _
    ByVal module As LongPtr, ByVal file As LongPtr, ByVal size As Long) As Long

Private applicationEvents As ZavrelApplicationEvents

Public Sub Auto_Open()
    Dim reason As String
    If Not ThisWorkbook.IsAddin Then Exit Sub
    On Error GoTo Failed
    If OpenAddInOtherThan("") = "" Then LoadAddInNear ThisWorkbook.Path
    Announce
    SayIfTwoCopies
    Set applicationEvents = New ZavrelApplicationEvents
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
    Set applicationEvents = Nothing
    UninitializeXlaInformation ApplicationId
End Sub

' Brings the functions back if Excel has closed the add-in without closing this workbook. Excel does so before
' it asks whether to save, and the user may cancel; or the user has unticked the add-in and ticked it again.
Public Sub ZavrelAnnounceAgain()
    If Not IsError(Application.Evaluate("ZavIsBlank(0)")) Then Exit Sub
    If IsUnticked() Then Exit Sub
    On Error GoTo Failed
    Announce
    SayIfTwoCopies
    ' Cells that were calculated in between show #NAME?.
    If Application.Calculation = xlCalculationAutomatic Then Application.CalculateFull
    Exit Sub
Failed:
    Set applicationEvents = Nothing ' not at every event
End Sub

Private Sub Announce()
    Dim workbookFile As String
    Dim helpFile As String
    Dim version As String
    Dim languageId As Long
    workbookFile = ThisWorkbook.FullName
    languageId = Application.LanguageSettings.LanguageID(LanguageOfUserInterface)
    helpFile = HelpFileIn(FolderOf(ReachedAddIn()), languageId)
    version = CompanionVersion
    InitializeXlaInformationVB Application, Nothing, ApplicationId, StrPtr(workbookFile), _
        languageId, StrPtr(version), StrPtr(helpFile)
End Sub

' The add-in that the declarations reach: of several copies in this process, the one that was loaded first.
Private Function ReachedAddIn() As String
    Dim name As String
    Dim file As String
    Dim module As LongPtr
    Dim length As Long
    name = AddInFile
    module = GetModuleHandleW(StrPtr(name))
    If module = 0 Then Exit Function ' 0 would stand for Excel itself
    file = String$(1024, vbNullChar)
    length = GetModuleFileNameW(module, StrPtr(file), Len(file))
    ReachedAddIn = Left$(file, length)
End Function

' An add-in from which Excel has functions and that is not this file; "" if there is none.
Private Function OpenAddInOtherThan(ByVal file As String) As String
    Dim functions As Variant
    Dim row As Long
    Dim library As String
    functions = Application.RegisteredFunctions ' Null without any
    If Not IsArray(functions) Then Exit Function
    For row = LBound(functions, 1) To UBound(functions, 1)
        library = functions(row, LBound(functions, 2))
        If LCase$(Right$(library, Len(AddInFile) + 1)) = "\" & LCase$(AddInFile) Then
            If LCase$(library) <> LCase$(file) Then
                OpenAddInOtherThan = library
                Exit Function
            End If
        End If
    Next row
End Function

' A second copy is loaded when a new version is opened while Excel runs with the old one.
Private Sub SayIfTwoCopies()
    Dim reached As String
    Dim other As String
    reached = ReachedAddIn()
    other = OpenAddInOtherThan(reached)
    If other = "" Then Exit Sub
    MsgBox ZavrelText("Two copies of the add-in are loaded. Functions and macros use " & reached & ", not " & _
        other & ". Please close Excel and start it again.", "Das Add-in ist zweimal geladen. Funktionen und " & _
        "Makros verwenden " & reached & ", nicht " & other & ". Bitte Excel schliessen und neu starten."), _
        vbExclamation, "Zavrel Functions"
End Sub

' Whether the user has unticked the add-in in Excel's list, and so does without it.
Private Function IsUnticked() As Boolean
    Dim listed As Object
    For Each listed In Application.AddIns
        If LCase$(listed.Name) = LCase$(AddInFile) Then
            IsUnticked = Not listed.Installed
            If listed.Installed Then Exit Function
        End If
    Next listed
End Function

Private Function FolderOf(ByVal file As String) As String
    FolderOf = Left$(file, InStrRev(file, "\"))
End Function

' The add-in is in the folder of this workbook, or in the folder that contains the folder macro.
Private Sub LoadAddInNear(ByVal workbookFolder As String)
    Dim folder As Variant
    For Each folder In Array(workbookFolder & "\", Left$(workbookFolder, InStrRev(workbookFolder, "\")))
        If Application.RegisterXLL(folder & AddInFile) Then Exit Sub
    Next folder
    Err.Raise vbObjectError + 8000, "ZavrelCompanion", _
        ZavrelText(AddInFile & " is neither loaded nor in the folder " & workbookFolder & ".", _
            AddInFile & " ist weder geladen noch im Ordner " & workbookFolder & ".")
End Sub

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
