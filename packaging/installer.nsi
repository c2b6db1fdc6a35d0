; The installer, for the current user, without administrator rights. make-installer defines
;   VERSION, STAGE (the folder to install), FILES (the file lists), OUTPUT, and SIGN, the command that
;   signs the uninstaller.
;
;   /S            asks no questions      /D=FOLDER   another folder (the last argument)
;   /COMPANION    also registers the companion workbook with Excel
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
!define COMPANION "macro\ZavrelCompanion.xlam"
!define STAGED_COMPANION "${STAGE}/macro/ZavrelCompanion.xlam"
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

!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_TEXT "$(NextStep)"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\docs\install.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "$(ShowNextStep)"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

LangString InUse ${LANG_ENGLISH} "${PRODUCT} is in use. Close Excel and try again."
LangString InUse ${LANG_GERMAN} "${PRODUCT} wird gerade verwendet. Bitte schließen Sie Excel und versuchen Sie es noch einmal."
LangString NotWritten ${LANG_ENGLISH} "A file could not be written; nothing was registered with Excel."
LangString NotWritten ${LANG_GERMAN} "Eine Datei konnte nicht geschrieben werden; in Excel wurde nichts eingetragen."
LangString NextStep ${LANG_ENGLISH} "One step is left: Excel knows the functions once a companion workbook is open.$\r$\n$\r$\nThe page docs\install.html in the add-in's folder explains how to make one in two minutes."
LangString NextStep ${LANG_GERMAN} "Ein Schritt fehlt noch: Excel hat die Funktionen, sobald eine Begleit-Arbeitsmappe geöffnet ist.$\r$\n$\r$\nDie Seite docs\install.html im Ordner des Add-ins sagt (auf Englisch), wie sie in zwei Minuten entsteht."
LangString ShowNextStep ${LANG_ENGLISH} "Show that page"
LangString ShowNextStep ${LANG_GERMAN} "Diese Seite zeigen"
LangString MainSection ${LANG_ENGLISH} "Add-in, ZavHost, examples and documents"
LangString MainSection ${LANG_GERMAN} "Add-in, ZavHost, Beispiele und Dokumente"
LangString CompanionSection ${LANG_ENGLISH} "Open the companion workbook with Excel"
LangString CompanionSection ${LANG_GERMAN} "Begleit-Arbeitsmappe mit Excel öffnen"

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
!endif

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

!macro ForEveryExcel FUNCTION
  StrCpy $R2 "14.0"
  Call ${FUNCTION}
  StrCpy $R2 "15.0"
  Call ${FUNCTION}
  StrCpy $R2 "16.0"
  Call ${FUNCTION}
!macroend

; Ends the installer if a program uses the add-in in FOLDER, so that it cannot be replaced.
!macro EndWhenInUse FOLDER
  ${If} ${FileExists} "${FOLDER}\${ADD_IN}"
    ClearErrors
    FileOpen $0 "${FOLDER}\${ADD_IN}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(InUse)" /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; --- Install -----------------------------------------------------------------------------------

Section "$(MainSection)"
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
!if /FileExists "${STAGED_COMPANION}"
  StrCpy $R3 "${COMPANION}"
  StrCpy $R0 "$INSTDIR\$R3"
  StrCpy $R1 '"$R0"'
  !insertmacro ForEveryExcel RegisterAgain
!endif
SectionEnd

!if /FileExists "${STAGED_COMPANION}"
  Section /o "$(CompanionSection)" CompanionId
    StrCpy $R3 "${COMPANION}"
    StrCpy $R0 "$INSTDIR\$R3"
    StrCpy $R1 '"$R0"'
    !insertmacro ForEveryExcel RegisterWithExcel
  SectionEnd

  Function .onInit
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/COMPANION" $1
    ${IfNot} ${Errors}
      SectionSetFlags ${CompanionId} 1 ; selected
    ${EndIf}
  FunctionEnd
!endif

; --- Uninstall ---------------------------------------------------------------------------------

Section "Uninstall"
  !insertmacro EndWhenInUse $INSTDIR
  !insertmacro UninstallFiles
  Delete "$INSTDIR\Uninstall.exe"
  RMDir $INSTDIR
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/UPGRADE" $1
  ${If} ${Errors}
    StrCpy $R0 "$INSTDIR\${ADD_IN}"
    !insertmacro ForEveryExcel un.UnregisterFromExcel
    StrCpy $R0 "$INSTDIR\${COMPANION}"
    !insertmacro ForEveryExcel un.UnregisterFromExcel
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
  ${EndIf}
SectionEnd
