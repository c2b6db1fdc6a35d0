; The installer, for the current user, without administrator rights. make-installer defines
;   VERSION, STAGE (the folder to install), FILES (the file lists), OUTPUT, and SIGN, the command that
;   signs the uninstaller.
;
;   /S            asks no questions      /D=FOLDER   another folder (the last argument)
;   /NOCOMPANION  leaves out the companion workbook, now and in later versions until /COMPANION
;
; A ZavrelCompanion.xlam in the top folder belongs to the user. None of our files may have that path, since
; our files are replaced and removed.
;
; Exit codes: 0 done, 1 cancelled, 2 a file could not be written, 3 the installed add-in is in use.
Target amd64-unicode ; must come first; the default stub is a 32-bit one
Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include StrFunc.nsh
${StrLoc}
${UnStrLoc}

!define PRODUCT "Zavrel Functions"
!define ADD_IN "ZavrelFuncs8_x64.xll"
!define DISTRIBUTIONS "ZavrelDistributions8_x64.xll"
!define COMPANION_NAME "ZavrelCompanion.xlam"
!define COMPANION "macro\${COMPANION_NAME}"
!define STAGED_COMPANION "${STAGE}/macro/${COMPANION_NAME}"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZavrelFunctions"
!define OFFICE_KEY "Software\Microsoft\Office"
!define OPEN_VALUES 100 ; how many OPEN values are examined

Name "${PRODUCT} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
VIProductVersion "${VERSION}"
VIAddVersionKey /LANG=0 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileDescription" "Installer of ${PRODUCT}"
VIAddVersionKey /LANG=0 "LegalCopyright" ""
!ifdef SIGN
  !uninstfinalize '${SIGN} "%1"'
!endif

; What the last page says, which page it offers to show, and how it calls that.
Var NextStep
Var NextPage
Var NextPageLabel

!define MUI_COMPONENTSPAGE_SMALLDESC ; below the list, so that both have the window's width
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_PAGE_CUSTOMFUNCTION_PRE ChooseNextStep
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_TEXT "$NextStep"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\$NextPage"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "$NextPageLabel"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

!macro Text NAME ENGLISH GERMAN
  LangString ${NAME} ${LANG_ENGLISH} "${ENGLISH}"
  LangString ${NAME} ${LANG_GERMAN} "${GERMAN}"
!macroend
!define TEXT "!insertmacro Text"

${TEXT} InUse "${PRODUCT} is in use. Close Excel and try again." \
  "${PRODUCT} wird gerade verwendet. Bitte schließen Sie Excel und versuchen Sie es noch einmal."
${TEXT} NotWritten "A file could not be written; nothing was registered with Excel." \
  "Eine Datei konnte nicht geschrieben werden; in Excel wurde nichts eingetragen."

${TEXT} MainSection "Add-ins and ZavHost" "Add-ins und ZavHost"
${TEXT} MainDescription "The functions for Excel, the program ZavHost, help, examples and documents." \
  "Die Funktionen für Excel, das Programm ZavHost, Hilfe, Beispiele und Dokumente."
${TEXT} CompanionSection "Companion workbook" "Begleit-Arbeitsmappe"
${TEXT} CompanionDescription "Excel opens it with the add-in. Without a companion, Excel does not know the functions." \
  "Excel öffnet sie zusammen mit dem Add-in. Ohne Begleit-Arbeitsmappe kennt Excel die Funktionen nicht."
${TEXT} MenuSection "Start menu" "Startmenü"
${TEXT} MenuDescription "Entries for the help, the examples, and the doctor, which checks the installation." \
  "Einträge für die Hilfe, die Beispiele und den Doctor, der die Installation prüft."

${TEXT} Ready "Start Excel: it has the functions. Try =ZavMean(1,2,3) in a cell, which shows 2." \
  "Starten Sie Excel: Es hat die Funktionen. Probieren Sie =ZavMean(1;2;3) in einer Zelle; sie zeigt 2."
${TEXT} ReadyMade "$(Ready)$\r$\n$\r$\nThe companion workbook was not written by Excel and has not been opened in Excel yet. If Excel rejects it, make your own in two minutes, as docs\install.html explains." \
  "$(Ready)$\r$\n$\r$\nDie Begleit-Arbeitsmappe wurde nicht von Excel geschrieben und noch nie in Excel geöffnet. Lehnt Excel sie ab, dann machen Sie in zwei Minuten eine eigene, wie es docs\install.de.html beschreibt."
${TEXT} Unticked "The add-in or its companion workbook is unticked in Excel's list, and stays so. To have the functions, tick both under File > Options > Add-ins > Excel Add-ins > Go." \
  "In der Liste von Excel hat das Add-in oder seine Begleit-Arbeitsmappe kein Häkchen, und das bleibt so. Für die Funktionen brauchen beide eines: unter Datei > Optionen > Add-Ins > Excel-Add-Ins > Los."
${TEXT} OneStepLeft "One step is left: Excel has the functions once a companion workbook is open.$\r$\n$\r$\nThe page docs\install.html in the add-in's folder explains how to select the ready-made one, or to make one in two minutes." \
  "Ein Schritt fehlt noch: Excel hat die Funktionen, sobald eine Begleit-Arbeitsmappe geöffnet ist.$\r$\n$\r$\nDie Seite docs\install.de.html im Ordner des Add-ins erklärt, wie Sie die fertige auswählen oder in zwei Minuten eine eigene machen."
${TEXT} FirstSteps "README.html" "README.de.html"
${TEXT} ShowFirstSteps "Show the first steps" "Erste Schritte zeigen"
${TEXT} InstallPage "docs\install.html" "docs\install.de.html"
${TEXT} ShowInstallPage "Show the page about the installation" "Die Seite zur Installation zeigen"

; The uninstaller may run in another language than the installer, so it needs the names in both.
!define MENU "$SMPROGRAMS\${PRODUCT}"
!define HELP_ENGLISH "Help on the functions"
!define HELP_GERMAN "Hilfe zu den Funktionen"
!define EXAMPLES_ENGLISH "Example workbooks"
!define EXAMPLES_GERMAN "Beispiel-Arbeitsmappen"
!define DOCTOR_ENGLISH "Doctor, checks the installation"
!define DOCTOR_GERMAN "Doctor, prüft die Installation"
${TEXT} HelpEntry "${HELP_ENGLISH}" "${HELP_GERMAN}"
${TEXT} HelpPage "help\en\index.html" "help\de\index.html"
${TEXT} ExamplesEntry "${EXAMPLES_ENGLISH}" "${EXAMPLES_GERMAN}"
${TEXT} DoctorEntry "${DOCTOR_ENGLISH}" "${DOCTOR_GERMAN}"

!include "${FILES}"

; --- Excel's list of add-ins -------------------------------------------------------------------
;
; Excel opens the files that the values OPEN, OPEN1, OPEN2, ... of its Options key name. For an add-in that the
; user has unticked, the key Add-in Manager has a value named after its path instead.

!macro NameOfOpenValue NUMBER NAME
  StrCpy ${NAME} "OPEN"
  ${If} ${NUMBER} > 0
    StrCpy ${NAME} "OPEN${NUMBER}"
  ${EndIf}
!macroend

; The state of the list for files in the folder of an older version: "|16.0 FILE|14.0 FILE|".
Var Ticked
Var Unticked

; In: $R0 the path, $R3 the file's name in the folder, $R2 Excel's version. Changes $0 to $3.
Function RememberState
  StrCpy $0 "${OFFICE_KEY}\$R2\Excel"
  ClearErrors
  ReadRegStr $1 HKCU "$0\Add-in Manager" $R0
  ${IfNot} ${Errors}
    StrCpy $Unticked "$Unticked$R2 $R3|"
    Return
  ${EndIf}
  ${ForEach} $1 0 ${OPEN_VALUES} + 1
    !insertmacro NameOfOpenValue $1 $2
    ReadRegStr $3 HKCU "$0\Options" $2
    ${StrLoc} $3 $3 '"$R0"' ">"
    ${If} $3 != ""
      StrCpy $Ticked "$Ticked$R2 $R3|"
      Return
    ${EndIf}
  ${Next}
FunctionEnd

; In: $R0 the path, $R1 the text of the value, $R3 the file's name in the folder, $R2 Excel's version.
; Changes $0 to $4. A path already in the list, ticked or not, stays as it is. A file that was unticked in the
; old folder is registered as unticked in the new one. Any other file gets the first free value.
Function RegisterWithExcel
  StrCpy $0 "${OFFICE_KEY}\$R2\Excel"
  ${If} $R2 != "16.0"
    EnumRegKey $1 HKCU $0 0
    ${If} $1 == ""
      Return ; this Excel is not installed
    ${EndIf}
  ${EndIf}
  ClearErrors
  ReadRegStr $1 HKCU "$0\Add-in Manager" $R0
  ${IfNot} ${Errors}
    Return
  ${EndIf}
  ${StrLoc} $3 $Unticked "|$R2 $R3|" ">"
  ${If} $3 != ""
    WriteRegStr HKCU "$0\Add-in Manager" $R0 ""
    Return
  ${EndIf}
  StrCpy $4 ""
  ${ForEach} $1 0 ${OPEN_VALUES} + 1
    !insertmacro NameOfOpenValue $1 $2
    ClearErrors
    ReadRegStr $3 HKCU "$0\Options" $2
    ${If} ${Errors}
      ${If} $4 == ""
        StrCpy $4 $2
      ${EndIf}
    ${Else}
      ${StrLoc} $3 $3 '"$R0"' ">"
      ${If} $3 != ""
        Return
      ${EndIf}
    ${EndIf}
  ${Next}
  ${If} $4 != ""
    EnumRegValue $1 HKCU "$0\Options" 0
    ${If} $1 == ""
      WriteRegStr HKCU "${UNINSTALL_KEY}" "MadeOptionsKey$R2" "1"
    ${EndIf}
    WriteRegStr HKCU "$0\Options" $4 $R1
  ${EndIf}
FunctionEnd

!if /FileExists "${STAGED_COMPANION}"
; The same, but only for a file that was in the list with the older version.
Function RegisterAgain
  ${StrLoc} $3 "$Ticked$Unticked" "|$R2 $R3|" ">"
  ${If} $3 != ""
    Call RegisterWithExcel
  ${EndIf}
FunctionEnd

; Two companions cannot be open at a time, so one that the user has chosen stays the only one. Parameters as of
; RegisterWithExcel.
Function RegisterCompanion
  Call FindCompanion
  ${If} $R4 == ""
    Call RegisterWithExcel
  ${EndIf}
FunctionEnd
!endif

; Ends the function if the path $R4 is that of a companion that is there. Changes $2 and $3.
!macro ReturnIfCompanion
  StrLen $2 "\${COMPANION_NAME}"
  StrCpy $3 $R4 "" -$2
  ${If} $3 == "\${COMPANION_NAME}"
  ${AndIf} ${FileExists} $R4
    Return
  ${EndIf}
!macroend

; Which companion, in whatever folder, this Excel has in its list. In: $R2 Excel's version. Out: $R4 its path, or an
; empty text, and $R5 whether it is "ticked" or "unticked". Changes $0 to $3. A file that is not there does not count.
Function FindCompanion
  StrCpy $0 "${OFFICE_KEY}\$R2\Excel"
  StrCpy $R5 "ticked"
  ${ForEach} $1 0 ${OPEN_VALUES} + 1
    !insertmacro NameOfOpenValue $1 $2
    ReadRegStr $3 HKCU "$0\Options" $2
    StrCpy $R4 $3
    StrCpy $2 $3 1 -1
    ${If} $2 == '"' ; it ends with a path in quotes
      ${StrLoc} $2 $3 '"' ">"
      IntOp $2 $2 + 1
      StrCpy $R4 $3 -1 $2
    ${EndIf}
    ${If} $R4 == "${COMPANION_NAME}" ; as Excel names a file in its own folder for add-ins
      StrCpy $R4 "$APPDATA\Microsoft\AddIns\$R4"
    ${EndIf}
    !insertmacro ReturnIfCompanion
  ${Next}
  StrCpy $R5 "unticked"
  ${For} $1 0 ${OPEN_VALUES}
    EnumRegValue $R4 HKCU "$0\Add-in Manager" $1
    !insertmacro ReturnIfCompanion
  ${Next}
  StrCpy $R4 ""
  StrCpy $R5 ""
FunctionEnd

; For the last page: puts $NextStep right where this Excel has more than the ones before. In: $R2 Excel's version.
Function NoteNextStep
  Call FindCompanion
  ClearErrors
  ReadRegStr $0 HKCU "${OFFICE_KEY}\$R2\Excel\Add-in Manager" "$INSTDIR\${ADD_IN}"
  ${IfNot} ${Errors}
    StrCpy $R5 "unticked"
  ${EndIf}
  ${If} $R5 == "unticked"
    StrCpy $NextStep "$(Unticked)"
  ${ElseIf} $R5 == "ticked"
    StrCpy $NextStep "$(Ready)"
    ${If} $R4 == "$INSTDIR\${COMPANION}"
      StrCpy $NextStep "$(ReadyMade)"
    ${EndIf}
    StrCpy $NextPage "$(FirstSteps)"
    StrCpy $NextPageLabel "$(ShowFirstSteps)"
  ${EndIf}
FunctionEnd

; In: $R0 the path, $R2 Excel's version. Changes $0 to $3.
Function un.UnregisterFromExcel
  StrCpy $0 "${OFFICE_KEY}\$R2\Excel"
  DeleteRegValue HKCU "$0\Add-in Manager" $R0
  ${ForEach} $1 0 ${OPEN_VALUES} + 1
    !insertmacro NameOfOpenValue $1 $2
    ReadRegStr $3 HKCU "$0\Options" $2
    ${UnStrLoc} $3 $3 '"$R0"' ">"
    ${If} $3 != ""
      DeleteRegValue HKCU "$0\Options" $2
    ${EndIf}
  ${Next}
  ReadRegStr $1 HKCU "${UNINSTALL_KEY}" "MadeOptionsKey$R2"
  ${If} $1 == "1"
    DeleteRegKey /ifempty HKCU "$0\Options"
    DeleteRegKey /ifempty HKCU "$0"
    DeleteRegKey /ifempty HKCU "${OFFICE_KEY}\$R2"
    DeleteRegKey /ifempty HKCU "${OFFICE_KEY}"
  ${EndIf}
FunctionEnd

; The latest Excel comes last: where several are installed, it decides what the last page says.
!macro ForEveryExcel FUNCTION
  StrCpy $R2 "14.0"
  Call ${FUNCTION}
  StrCpy $R2 "15.0"
  Call ${FUNCTION}
  StrCpy $R2 "16.0"
  Call ${FUNCTION}
!macroend

; Ends the installer if a program uses the add-ins in FOLDER, so that they cannot be replaced.
!macro EndWhenInUse FOLDER
  !insertmacro EndWhenFileInUse "${FOLDER}\${ADD_IN}"
  !insertmacro EndWhenFileInUse "${FOLDER}\${DISTRIBUTIONS}"
!macroend
!macro EndWhenFileInUse FILE
  ${If} ${FileExists} "${FILE}"
    ClearErrors
    FileOpen $0 "${FILE}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(InUse)" /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; --- Install -----------------------------------------------------------------------------------

Section "$(MainSection)" MainId
  SectionIn RO
  ReadRegStr $R8 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  !insertmacro EndWhenInUse $INSTDIR
  StrCpy $Ticked "|"
  StrCpy $Unticked "|"
  ${If} $R8 != ""
    !insertmacro EndWhenInUse $R8
    StrCpy $R3 "${ADD_IN}"
    StrCpy $R0 "$R8\$R3"
    !insertmacro ForEveryExcel RememberState
    StrCpy $R3 "${DISTRIBUTIONS}"
    StrCpy $R0 "$R8\$R3"
    !insertmacro ForEveryExcel RememberState
    StrCpy $R3 "${COMPANION}"
    StrCpy $R0 "$R8\$R3"
    !insertmacro ForEveryExcel RememberState
    ; The old version's uninstaller knows its files. If the folder is the same, Excel's list stays as it is.
    StrCpy $R7 ""
    ${If} $R8 == $INSTDIR
      StrCpy $R7 "/UPGRADE"
    ${EndIf}
    ExecWait '"$R8\Uninstall.exe" /S $R7 _?=$R8'
    Delete "$R8\Uninstall.exe"
    RMDir $R8
  ${EndIf}

  ClearErrors
  !insertmacro InstallFiles
  SetOutPath $INSTDIR
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "$(NotWritten)" /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\ZavHost.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Zavrel Functions team"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" $INSTDIR
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} $INSTDIR "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0

  StrCpy $R3 "${ADD_IN}"
  StrCpy $R0 "$INSTDIR\$R3"
  StrCpy $R1 '/R "$R0"'
  !insertmacro ForEveryExcel RegisterWithExcel
!if /FileExists "${STAGE}/${DISTRIBUTIONS}"
  StrCpy $R3 "${DISTRIBUTIONS}"
  StrCpy $R0 "$INSTDIR\$R3"
  StrCpy $R1 '/R "$R0"'
  !insertmacro ForEveryExcel RegisterWithExcel
!endif
!if /FileExists "${STAGED_COMPANION}"
  StrCpy $R3 "${COMPANION}"
  StrCpy $R0 "$INSTDIR\$R3"
  StrCpy $R1 '"$R0"'
  !insertmacro ForEveryExcel RegisterAgain
!endif
SectionEnd

!if /FileExists "${STAGED_COMPANION}"
  Section "$(CompanionSection)" CompanionId
    StrCpy $R3 "${COMPANION}"
    StrCpy $R0 "$INSTDIR\$R3"
    StrCpy $R1 '"$R0"'
    !insertmacro ForEveryExcel RegisterCompanion
  SectionEnd

  ; A companion that was left out once is left out again.
  Function .onInit
    ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "Companion"
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/NOCOMPANION" $2
    ${IfNot} ${Errors}
      StrCpy $0 "no"
    ${EndIf}
    ClearErrors
    ${GetOptions} $1 "/COMPANION" $2
    ${IfNot} ${Errors}
      StrCpy $0 "yes"
    ${EndIf}
    ${If} $0 == "no"
      !insertmacro UnselectSection ${CompanionId}
    ${EndIf}
  FunctionEnd

  Function .onInstSuccess
    StrCpy $0 "no"
    ${If} ${SectionIsSelected} ${CompanionId}
      StrCpy $0 "yes"
    ${EndIf}
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Companion" $0
  FunctionEnd
!endif

Section "$(MenuSection)" MenuId
  CreateDirectory "${MENU}"
  SetOutPath $INSTDIR ; where the shortcuts start
  CreateShortCut "${MENU}\$(HelpEntry).lnk" "$INSTDIR\$(HelpPage)"
  CreateShortCut "${MENU}\$(ExamplesEntry).lnk" "$INSTDIR\examples"
  ; The window stays open with what the doctor found.
  CreateShortCut "${MENU}\$(DoctorEntry).lnk" "$SYSDIR\cmd.exe" '/k ""$INSTDIR\ZavHost.exe" doctor"' "$INSTDIR\ZavHost.exe"
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${MainId} "$(MainDescription)"
!if /FileExists "${STAGED_COMPANION}"
  !insertmacro MUI_DESCRIPTION_TEXT ${CompanionId} "$(CompanionDescription)"
!endif
  !insertmacro MUI_DESCRIPTION_TEXT ${MenuId} "$(MenuDescription)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function ChooseNextStep
  StrCpy $NextStep "$(OneStepLeft)"
  StrCpy $NextPage "$(InstallPage)"
  StrCpy $NextPageLabel "$(ShowInstallPage)"
  !insertmacro ForEveryExcel NoteNextStep
FunctionEnd

; --- Uninstall ---------------------------------------------------------------------------------

!macro DeleteMenuEntries LANGUAGE
  Delete "${MENU}\${HELP_${LANGUAGE}}.lnk"
  Delete "${MENU}\${EXAMPLES_${LANGUAGE}}.lnk"
  Delete "${MENU}\${DOCTOR_${LANGUAGE}}.lnk"
!macroend

Section "Uninstall"
  !insertmacro EndWhenInUse $INSTDIR
  !insertmacro DeleteMenuEntries ENGLISH
  !insertmacro DeleteMenuEntries GERMAN
  RMDir "${MENU}"
  !insertmacro UninstallFiles
  Delete "$INSTDIR\Uninstall.exe"
  RMDir $INSTDIR
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/UPGRADE" $1
  ${If} ${Errors}
    StrCpy $R0 "$INSTDIR\${ADD_IN}"
    !insertmacro ForEveryExcel un.UnregisterFromExcel
    StrCpy $R0 "$INSTDIR\${DISTRIBUTIONS}"
    !insertmacro ForEveryExcel un.UnregisterFromExcel
    StrCpy $R0 "$INSTDIR\${COMPANION}"
    !insertmacro ForEveryExcel un.UnregisterFromExcel
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
  ${EndIf}
SectionEnd
