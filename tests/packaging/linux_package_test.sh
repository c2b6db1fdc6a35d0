#!/usr/bin/env bash
# linux_package_test.sh SOURCE OUT SCRATCH BUILD: packs the native product twice; installs the Debian package in a root
# with nothing in it but the C library, and takes it away again; runs the tar.gz as a user without rights. BUILD is
# the build folder, which says what is linked in.
set -Eeuo pipefail
trap 'printf "stopped in line %s: %s\n" "$LINENO" "$BASH_COMMAND" >&2' ERR
source=$1 out=$2 scratch=$3 build=$4
export PATH=$PATH:/usr/sbin:/sbin
# shellcheck disable=SC1091
. "$source/tests/packaging/checks.sh"

rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"
"$source/help/build_help.py" html help

# --- Packing: the same bytes, everything in it ---

"$source/packaging/package-linux" "$out" "$build" help first >/dev/null
(umask 077 && TZ=Asia/Tokyo LC_ALL=C "$source/packaging/package-linux" "$out" "$build" help second >/dev/null)
tar=$(cd first && echo *.tar.gz) deb=$(cd first && echo *.deb) name=${tar%.tar.gz}
check "the tar.gz has the same bytes again" 'cmp first/$tar second/$tar'
check "the Debian package has the same bytes again" 'cmp first/$deb second/$deb'

tar -xzf "first/$tar"
dpkg-deb -x "first/$deb" deb
private=deb/usr/lib/zavrel-functions docs=deb/usr/share/doc/zavrel-functions
check "everything that the build made is in the package" '
  diff <(cd "$out" && find . -type f | sort) <(cd $private && find . -type f | sort)'
# sums FOLDER CONDITION...: its files with their checksums.
sums() { (cd "$1" && find . -type f "${@:2}" -print0 | sort -z | xargs -0 sha256sum); }
check "the tar.gz holds the same" '
  diff <(sums $private; sums $docs ! -name changelog.gz ! -name copyright ! -name "README*") <(
    sums $name ! -path "./share/*" \( -name zavhost -o -name "*.so" \)
    sums $name ! -path "./share/*" ! -name zavhost ! -name "*.so" ! -name LICENCES.txt ! -name "README*")'
for file in README.html README.de.html docs/install.html docs/install.de.html help/en/ZavMean.html help/de/index.html examples/self-test.xlsx \
  examples/iris.csv examples/cluster/recalculate.py; do
  check "the package holds $file" '[ -s $docs/$file ]'
done
check "documents link to pages, headings and pictures that are there" '
  links_lead_somewhere $docs && links_lead_somewhere $name'
check "no text names a script that does not ship" 'names_no_missing_script $name && names_no_missing_script deb'
check "the German documents have the structure of the English ones" '
  same_structure $docs README && same_structure $docs docs/install'
check "the examples have the values of all their formulas" '"$out/zavhost" check --all $docs/examples >check.txt'
check "what is linked in has its notice" '
  notices_are_complete $docs/copyright "$build" && notices_are_complete $name/LICENCES.txt "$build"'
check "licences to which notices refer are in the tar.gz" '
  grep -q "^Text of GPL-3, to which notices refer" $name/LICENCES.txt &&
  grep -q "GNU GENERAL PUBLIC LICENSE" $name/LICENCES.txt'
check "the command's manual page and its completion are where they are looked for" '
  zcat deb/usr/share/man/man1/zavhost.1.gz | cmp - $name/share/man/man1/zavhost.1 &&
  grep -q "Zavrel Functions [0-9.]*[0-9]\"" $name/share/man/man1/zavhost.1 &&
  cmp deb/usr/share/bash-completion/completions/zavhost $name/share/bash-completion/completions/zavhost'
check "nothing is left to be filled in" '
  ! grep -rnE "@[A-Z]+@" $docs/copyright $name/share <(dpkg-deb -f first/$deb)'
check "the C library is all that the package needs" '
  [[ $(dpkg-deb -f first/$deb Depends) =~ ^libc6\ \(\>=\ [0-9.]+\)$ ]]'
check "the package's own checksums agree" '
  (cd deb && dpkg-deb --ctrl-tarfile "../first/$deb" | tar -xO ./md5sums | md5sum -c --quiet)'
if command -v lintian >/dev/null; then
  check "lintian finds nothing" '
    lintian --allow-root --display-info --pedantic --fail-on error,warning,info,pedantic "first/$deb"'
else
  echo "lintian is missing: the package has not been checked with it"
fi

# --- The extension for LibreOffice Calc, where its development kit is installed ---

if [ -f "$build/calc/zavrel.rdb" ]; then
  "$source/packaging/package-calc" "$out" "$build" help first >/dev/null
  (umask 077 && TZ=Asia/Tokyo LC_ALL=C "$source/packaging/package-calc" "$out" "$build" help second >/dev/null)
  oxt=$(cd first && echo *.oxt)
  check "the extension has the same bytes again" 'cmp first/$oxt second/$oxt'
  check "its name has the version" '[ "$oxt" = "${name%-linux-x86_64}.oxt" ]'
  python3 -m zipfile -e "first/$oxt" oxt
  check "the extension has all libraries, and needs what every LibreOffice has" '
    diff <(cd $private && find . -name "*.so" | sort) <(cd oxt/Linux_x86_64 && find . -name "*.so" ! -name "*Calc8*" | sort) &&
    ! find oxt -name "*.so" -exec readelf -d {} + | grep NEEDED |
      grep -vE "\[(libc|libm|ld-linux-x86-64|libuno_cppu|libuno_sal)\.so\.[0-9]+\]"'
  check "the extension has the help" 'diff -r help oxt/help'
  check "what is linked into the extension has its notice" '
    notices_are_complete oxt/LICENCES.txt "$build" && grep -q "^LibreOffice, header files" oxt/LICENCES.txt &&
    ! grep -q "^LibreOffice" $docs/copyright'
  check "whatever the manifest names is there" '
    grep -o "full-path=\"[^\"]*" oxt/META-INF/manifest.xml | cut -d\" -f2 | (cd oxt && xargs ls >/dev/null)'
  rm -rf oxt
fi

# --- A root with the C library alone ---

root=$scratch/root
mkdir -p "$root"/{dev,etc,proc,tmp,usr/bin,var/lib/dpkg/info,var/lib/dpkg/updates}
for folder in /bin /lib /lib64 /sbin; do
  if [ -L "$folder" ]; then
    mkdir -p "$root/$(readlink "$folder")"
    cp -P "$folder" "$root$folder"
  fi
done
touch "$root/usr/bin/other" # of another package
dpkg -L libc6 | while read -r file; do if [ ! -d "$file" ]; then echo "$file"; fi; done |
  tar -C / -cf - --files-from - 2>/dev/null | tar -C "$root" --keep-directory-symlink --no-same-owner -xf -
# The system knows the C library as a package, but nothing that it needs.
dpkg-query -s libc6 | grep -E '^(Package|Status|Maintainer|Architecture|Multi-Arch|Version|Description):' \
  >"$root/var/lib/dpkg/status"
cp /var/lib/dpkg/info/libc6:*.list /var/lib/dpkg/info/libc6.list "$root/var/lib/dpkg/info/" 2>/dev/null || true

as_root() { unshare --map-root-user --mount "$@"; }
# The build machine may leave out documents.
dpkg_in_root() {
  as_root dpkg --root="$root" --log="$scratch/dpkg.log" --path-include='/*' "$@" >dpkg.txt 2>&1 ||
    { cat dpkg.txt; false; }
}
in_root() {
  as_root sh -c 'mount --rbind /proc "$0/proc" && mount --rbind /dev "$0/dev" && exec chroot "$0" "$@"' "$root" "$@"
}
everything() {
  (cd "$root" && find . \( -path ./proc -o -path ./dev -o -path ./var/lib/dpkg \) -prune -o -print | sort)
}

everything >before.txt
check "it can be installed" 'dpkg_in_root --install "first/$deb"'
check "installed, it has the package's files" '
  diff <(cd deb && find . ! -type d | sort) <(comm -13 before.txt <(everything) | while read -r file; do
    if [ ! -d "$root/$file" ] || [ -L "$root/$file" ]; then echo "$file"; fi; done)'
check "the C library is all there is" '[ ! -e "$root/bin/sh" ]'
check "the doctor finds it sound" 'in_root /usr/bin/zavhost doctor >doctor.txt || { cat doctor.txt >&2; false; }'
check "a formula" '[ "$(in_root /usr/bin/zavhost eval "=ZavMean(1,2,3)")" = 2 ]'
examples=/usr/share/doc/zavrel-functions/examples
check "the self-test agrees" '
  in_root /usr/bin/zavhost run --all --csv $examples/self-test.xlsx >self-test.csv &&
  grep -qE "^Self-test,B4,.*,All [0-9]+ agree," self-test.csv'
check "all examples, each in a process of its own" '
  in_root /usr/bin/zavhost run $examples --output-folder /tmp/new >root-run.txt &&
  in_root /usr/bin/zavhost check /tmp/new >root-check.txt &&
  [ $(ls "$root/tmp/new" | wc -l) = $(ls "$source"/examples/*.xlsx | wc -l) ]'
rm -rf "$root/tmp/new"
check "no test has left anything" '[ -z "$(ls -A "$root/tmp")" ]'
check "it can be removed" 'dpkg_in_root --remove zavrel-functions'
everything >after.txt
check "removed, it leaves nothing" 'diff before.txt after.txt'
check "and the system has forgotten it" '
  ! grep -r zavrel-functions "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/info"'

# --- The tar.gz, in a folder with blanks and umlauts, as a user without rights ---

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
as_user=(env -i PATH=/usr/bin:/bin)
if [ "$(id -u)" = 0 ]; then
  chown nobody "$folder"
  as_user+=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
fi
place="$folder/Größen & Zahlen 数"
"${as_user[@]}" mkdir "$place"
"${as_user[@]}" tar -C "$place" -xz <"first/$tar"
host=$place/$name/zavhost
check "there, the doctor finds it sound" '
  "${as_user[@]}" "$host" doctor >portable.txt || { cat portable.txt >&2; false; }'
check "a formula there" '[ "$("${as_user[@]}" "$host" eval "=ZavMean(1,2,3)")" = 2 ]'
check "the self-test gives the same there" '
  "${as_user[@]}" "$host" run --all --csv "$place/$name/examples/self-test.xlsx" | cmp - self-test.csv'
check "all examples there" '
  "${as_user[@]}" "$host" run "$place/$name/examples" --output-folder "$place/neu" >run.txt &&
  "${as_user[@]}" "$host" check "$place/neu" >check.txt'
rm -rf "$folder"
trap - EXIT

rm -rf deb first help "$name" root second
[ "${failures:?}" = 0 ] && echo "packed, installed, removed, and run from a folder"
exit $((failures > 0))
