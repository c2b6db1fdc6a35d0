#!/usr/bin/env bash
# package_test.sh SOURCE OUT SCRATCH BUILD HOST: packs what ships twice, signed; installs it under Wine in a prefix of
# its own beside other add-ins, over an older version, and takes it away again. BUILD is the build folder, HOST a
# program that calculates the examples.
set -Eeuo pipefail
trap 'printf "stopped in line %s: %s\n" "$LINENO" "$BASH_COMMAND" >&2' ERR
source=$1 scratch=$3 out=$3/out build=$4 host=$5
# shellcheck disable=SC1091
. "$source/tests/packaging/checks.sh"

# What a run that failed left to be looked at, its prefix included.
if [ -d "$scratch/wine" ]; then ZAV_WINEPREFIX=$scratch/wine "$source/cmake/wine-run" --down || true; fi
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$2" "$out"
cd "$scratch"

# What a package holds beside the build: the help, compiled where the tools are.
compiled=()
if command -v chmcmd >/dev/null && command -v 7z >/dev/null; then compiled=(compiled); fi
rm -rf "$out/help"
"$source/help/build_help.py" html "$out/help"
for what in intellisense "${compiled[@]}"; do "$source/help/build_help.py" "$what" "$out" >/dev/null; done

openssl req -x509 -newkey rsa:2048 -nodes -days 30 -subj '/CN=Zavrel Functions test' \
  -addext extendedKeyUsage=codeSigning -addext keyUsage=digitalSignature -keyout key.pem -out certificate.pem 2>/dev/null

# --- Packing: the same bytes, everything in it, signed ---

for run in first second; do
  "$source/packaging/package" "$out" "$build" "$host" "$run" --certificate certificate.pem --key key.pem >/dev/null
done
zip=$(cd first && echo *.zip) setup=$(cd first && echo *-setup.exe) name=${zip%.zip}
stage=$scratch/first/$name
check "the zip has the same bytes again" 'cmp first/$zip second/$zip'
check "the installer has the same bytes again" 'cmp first/$setup second/$setup'
check "everything that the build made is in the zip" '
  diff <(cd "$out" && find . -type f | sed s/^..// | sort) \
       <(unzip -Z1 first/$zip | sed "s/^$name.//" | grep -vE "^(docs|examples)/|^[A-Z]+(.de)?.html$|^LICENCES.txt$" | sort)'
help_files() {
  local language=$1 folder=$2
  echo "help/$language/index.html" "help/$language/ZavMean.html" "${folder}ZavrelFuncs8_x64.xll.intellisense.xml"
  if [ ${#compiled[@]} -gt 0 ]; then echo "$folder$3"; fi
}
for file in $(help_files en "" ZavrelFuncs8_x64.chm) $(help_files de help/de/ ZavrelFuncs8_x64.de.chm); do
  check "the package holds $file" '[ -s "$stage/$file" ]'
done
for file in examples/self-test.xlsx macro/ZavrelSelfTest.bas macro/ZavrelApplicationEvents.cls docs/excel-trial.html \
  README.html README.de.html docs/install.de.html; do
  check "the package holds $file" '[ -s "$stage/$file" ]'
done
check "a companion that a user saves beside the add-in has no path of ours" '
  [ -f "$stage/macro/ZavrelCompanion.xlam" ] && [ ! -e "$stage/ZavrelCompanion.xlam" ]'
check "documents link to pages, headings and pictures that are there" 'links_lead_somewhere "$stage"'
check "no text names a script that does not ship" 'names_no_missing_script "$stage"'
check "what is linked in has its notice, and so has the installer" '
  notices_are_complete "$stage/LICENCES.txt" "$build" && grep -q "^NSIS" "$stage/LICENCES.txt" &&
  grep -q "winpthreads" "$stage/LICENCES.txt"'
find "$stage" -iname "*.xll" -o -iname "*.dll" -o -iname "*.exe" >signed.txt
echo "$scratch/first/$setup" >>signed.txt
while read -r file; do
  check "$file is signed" 'osslsigncode verify -CAfile certificate.pem -in "$file" >verify.txt 2>&1'
done <signed.txt
cp "$stage/ZavHost.exe" changed.exe
printf x | dd of=changed.exe bs=1 seek=4096 conv=notrunc status=none
check "a change is seen" '! osslsigncode verify -CAfile certificate.pem -in changed.exe >/dev/null 2>&1'

# --- The component for LibreOffice Calc, where its development kit is installed: nothing more than links it ---

component=$build/calc/XLCall32.dll
if [ -f "$component" ]; then
  x86_64-w64-mingw32-objdump -p "$component" >component.txt
  check "the component for Calc has its entry points" '
    grep -q " component_getFactory$" component.txt && grep -q " GetExcel12EntryPt$" component.txt'
  check "the component for Calc needs only what Windows and LibreOffice have" '
    [ "$(sed -nE "s/.*DLL Name: //p" component.txt | sort | tr "\n" " ")" = "KERNEL32.dll USER32.dll cppu3.dll msvcrt.dll sal3.dll " ]'
fi

# --- Installing ---

export ZAV_WINEPREFIX=$scratch/wine WINEPREFIX=$scratch/wine WINEDEBUG=-all
wine() { "$source/cmake/wine-run" "$@"; }
wine --up
trap '"$source/cmake/wine-run" --down || true' EXIT
# Wine names the user's folder after the account, or by another name where USER is not set.
user=${USER:-root}
if [ ! -d "$WINEPREFIX/drive_c/users/$user" ]; then
  user=$(find "$WINEPREFIX/drive_c/users" -mindepth 1 -maxdepth 1 -type d ! -name Public -printf '%f\n' -quit)
fi
folder="$WINEPREFIX/drive_c/users/$user/AppData/Local/Programs/Zavrel Functions"
add_in_path="C:\\\\users\\\\$user\\\\AppData\\\\Local\\\\Programs\\\\Zavrel Functions\\\\ZavrelFuncs8_x64.xll"
own_companion=${add_in_path%ZavrelFuncs8_x64.xll}ZavrelCompanion.xlam
excel='HKCU\Software\Microsoft\Office\16.0\Excel'

# What the registry holds where an installer writes, as text.
registry() {
  wine reg export 'HKCU\Software\Microsoft\Office' office.reg /y >/dev/null 2>&1
  wine reg export 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall' uninstall.reg /y >/dev/null 2>&1 || : >uninstall.reg
  iconv -f UTF-16 -t UTF-8 office.reg
  if [ -s uninstall.reg ]; then iconv -f UTF-16 -t UTF-8 uninstall.reg; fi
  rm -f office.reg uninstall.reg
}
menu="$WINEPREFIX/drive_c/users/$user/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Zavrel Functions"
# entry NAME TEXT: whether the Start menu has this entry, and the text stands in it.
entry() { [ -f "$menu/$1.lnk" ] && tr -d '\0' <"$menu/$1.lnk" | grep -qaF "$2"; }
open_values() { tr -d '\r' <"$1" | grep -E '^"OPEN' | sort; }
uninstall() {
  wine "$folder/Uninstall.exe" "$@"
  # It goes on as a copy of itself.
  local tenths=0
  while [ -e "$folder/Uninstall.exe" ] && [ $tenths -lt 300 ]; do sleep 0.1; tenths=$((tenths + 1)); done
}

# Other add-ins, with a gap among them, one whose path only ends like ours, and a companion of the user's own.
wine reg add "$excel\\Options" /v OPEN /d '/R "C:\Other\first.xll"' /f >/dev/null
wine reg add "$excel\\Options" /v OPEN1 /d '"C:\Other\second.xlam"' /f >/dev/null
wine reg add "$excel\\Options" /v OPEN3 /d '/R "C:\Other\ZavrelFuncs8_x64.xll"' /f >/dev/null
wine reg add "$excel\\Options" /v OPEN4 /d "\"${own_companion//\\\\/\\}\"" /f >/dev/null
wine reg add "$excel\\Add-in Manager" /v 'C:\Other\unticked.xlam' /d '' /f >/dev/null
wine reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Other' /v DisplayName /d Other /f >/dev/null
registry >before.txt

mkdir -p "old/stage/no longer"
cp "$stage/ZavrelFuncs8_x64.xll" old/stage/
echo old | tee old/stage/README.html >"old/stage/no longer/there.txt"
"$source/packaging/make-installer" old/stage 7.0.0.1 old/zavrel-setup.exe
wine old/zavrel-setup.exe /S
check "the older version is there" '[ -f "$folder/no longer/there.txt" ]'
registry >old.txt
check "the free value is taken" 'open_values old.txt | grep -qF "\"OPEN2\"=\"/R \\\"$add_in_path\\\"\""'
check "and no other" '[ $(open_values old.txt | wc -l) = 5 ]'

for file in "notes of mine.txt" ZavrelCompanion.xlam; do echo mine >"$folder/$file"; done
wine "first/$setup" /S
check "the new version replaces all of the old one and keeps what is not its own" '
  { diff -r "$stage" "$folder" || true; } | sort | diff - <(printf "Only in %s: %s\n" "$folder" Uninstall.exe "$folder" "notes of mine.txt" "$folder" ZavrelCompanion.xlam | sort)'
registry >new.txt
check "upgrading leaves the add-in where it was" 'diff <(open_values old.txt) <(open_values new.txt | grep -v Distributions)'
check "the second add-in takes the next free value" 'open_values new.txt | grep -q "^\"OPEN5\"=.*ZavrelDistributions8_x64[.]xll"'
check "the Start menu has the help, the examples and the doctor" '
  entry "Help on the functions" "help\en\index.html" && entry "Example workbooks" "Zavrel Functions\examples" &&
  entry "Doctor, checks the installation" "ZavHost.exe\" doctor"'
check "Windows lists the new version" 'grep -q "DisplayVersion.*${name#ZavrelFunctions-}" new.txt'
check "the uninstaller is signed" 'osslsigncode verify -CAfile certificate.pem -in "$folder/Uninstall.exe" >/dev/null 2>&1'
check "the installed add-in works" '[ "$(wine "$folder/ZavHost.exe" eval "=ZavMean(1,2,3)+ZavNormal(0,1,\"xtop\",0)" | tr -d "\r")" = 2.5 ]'
check "the doctor finds it sound, and in Excel's list with the user's own companion" '
  wine "$folder/ZavHost.exe" doctor >doctor.txt && grep -qE "^  ok .*OPEN2 = /R" doctor.txt &&
  grep -qE "^  ok .*OPEN4 = .*ZavrelCompanion" doctor.txt'

# A program that has the add-in open, as Excel has.
touch "$scratch/in use"
(cd "$folder" && wine cmd /c 'ping -n 15 127.0.0.1 < ZavrelFuncs8_x64.xll > nul'; rm "$scratch/in use") &
sleep 2
status=0; wine "first/$setup" /S || status=$?
registry >in_use.txt
check "an add-in in use is not replaced" '[ $status = 3 ] && [ -f "$folder/Uninstall.exe" ] && diff new.txt in_use.txt'
check "and was in use all the time" '[ -e "$scratch/in use" ]'
wait $!
# Wine may close the program's files a moment after its end.
for attempt in 1 2 3 4 5; do
  if wine "first/$setup" /S; then break; fi
  [ $attempt -lt 5 ] && sleep 1
done

# A user unticks it: it stays unticked when it is installed again, and goes with everything else.
wine reg delete "$excel\\Options" /v OPEN2 /f >/dev/null
wine reg add "$excel\\Add-in Manager" /v "${add_in_path//\\\\/\\}" /d '' /f >/dev/null
wine "first/$setup" /S
registry >unticked.txt
check "an unticked add-in stays unticked" '[ $(open_values unticked.txt | wc -l) = 5 ]'
uninstall /S
registry >after.txt
check "uninstalled, the registry is as before" 'diff before.txt after.txt'
check "the Start menu too" '[ ! -e "$menu" ]'
check "and so are the files, a companion of the user's among them" '
  [ "$(cd "$folder" && cat * && ls)" = "$(printf "mine\nmine\nZavrelCompanion.xlam\nnotes of mine.txt")" ]'
rm -r "$folder"

# --- Another folder, with blanks and umlauts, and no key of Excel's ---

wine reg delete 'HKCU\Software\Microsoft\Office' /f >/dev/null
folder="$WINEPREFIX/drive_c/Über uns/Zavrel"
# The last argument is read as it stands to the end of the line: it must not be quoted, as one with a blank
# would be.
wine "first/$setup" /S /NOCOMPANION '/D=C:\Über' 'uns\Zavrel'
wine "first/$setup" /S
registry >without.txt
check "a companion that was left out is left out again" '[ $(open_values without.txt | wc -l) = 2 ]'
wine "first/$setup" /S /COMPANION
registry >elsewhere.txt
check "the add-in is the first of all" 'open_values elsewhere.txt | grep -q "^\"OPEN\"=.*Zavrel.*ZavrelFuncs8_x64[.]xll"'
check "and the companion comes after both" 'open_values elsewhere.txt | grep -q "^\"OPEN2\"=\"..C:.*Zavrel..macro..ZavrelCompanion[.]xlam..\"$"'
check "the add-in works there" '[ "$(wine "$folder/ZavHost.exe" eval "=ZavSum(1,2)" | tr -d "\r")" = 3 ]'

# Moved by an upgrade: what was ticked is ticked there, what was unticked is not.
wine reg delete "$excel\\Options" /v OPEN /f >/dev/null
wine reg add "$excel\\Add-in Manager" /v 'C:\Über uns\Zavrel\ZavrelFuncs8_x64.xll' /d '' /f >/dev/null
wine "first/$setup" /S '/D=C:\Moved'
registry >moved.txt
check "the old folder is gone" '[ ! -e "$folder" ]'
folder="$WINEPREFIX/drive_c/Moved"
check "the companion is ticked in the new folder" '
  [ "$(open_values moved.txt | grep -v Distributions)" = "\"OPEN1\"=\"\\\"C:\\\\Moved\\\\macro\\\\ZavrelCompanion.xlam\\\"\"" ]'
check "the add-in is unticked there" '
  [ "$(grep -F Funcs8_x64.xll moved.txt | tr -d "\r")" = "\"C:\\\\Moved\\\\ZavrelFuncs8_x64.xll\"=\"\"" ]'
wine reg delete "$excel\\Add-in Manager" /f >/dev/null # a key of Excel's that it leaves
uninstall /S
# The uninstaller runs from a copy of its own, which on a busy machine ends later than the registry shows.
for _ in $(seq 180); do [ -e "$folder" ] || break; sleep 1; done
check "nothing is left of it" '[ ! -e "$folder" ] && ! wine reg query "HKCU\\Software\\Microsoft\\Office" >/dev/null 2>&1'

"$source/cmake/wine-run" --down || true
trap - EXIT
rm -rf out first second old wine wine.lock
[ "${failures:?}" = 0 ] && echo "packed, signed, installed, upgraded and uninstalled"
exit $((failures > 0))
