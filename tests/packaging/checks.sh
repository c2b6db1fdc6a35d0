# shellcheck shell=bash disable=SC2154 # $source is not set here
# For tests that are shell scripts.
failures=0
check() { if ! eval "$2"; then printf 'FAILED: %s\n' "$1" >&2; failures=$((failures + 1)); fi; }

# links_lead_somewhere FOLDER: whether the documents link to pages, headings and pictures that are there.
links_lead_somewhere() {
  local broken
  broken=$(cd "$1" && find . -name "*.html" -not -path "./help/*" | while read -r page; do
    { grep -oE '(href|src)="[^":]+"' "$page" || true; } | cut -d\" -f2 | while read -r link; do
      file=$(dirname "$page")/${link%%#*}; [[ $link = \#* ]] && file=$page
      { [ -e "$file" ] && { [[ $link != *\#* ]] || grep -q "id=.${link#*#}\"" "$file"; }; } || echo "$page: $link"
    done
  done)
  if [ -n "$broken" ]; then printf '%s\n' "$broken" >&2; false; fi
}

# names_no_missing_script FOLDER: no text there names a script of the sources that is not there too. Uses $source.
names_no_missing_script() {
  local name found=''
  {
    echo ./dev
    # Without an ending, a script is known by its folder.
    (cd "$source" && find bench cmake companions examples help packaging src tests -type f \
      \( \( -name '*.py' -o -name '*.sh' -o -name '*.R' \) -printf '%f\n' -o -perm -u+x -printf '%p\n' \))
  } | sort -u | while read -r name; do [ -n "$(find "$1" -name "${name##*/}" -print -quit)" ] || echo "$name"; done >scripts.txt
  found=$(grep -rIwnFf scripts.txt "$1" || true)
  if [ -n "$found" ]; then printf '%s\n' "$found" >&2; false; fi
}

# same_structure FOLDER PAGE: whether a document and its German version have the same headings, lists, rows, pictures
# and program texts, in the same order.
same_structure() {
  local outline='s/.*(<(h[1-6]|li|tr|td|th|img|pre)\b).*/\2/p'
  [ "$(sed -nE "$outline" "$1/$2.html")" = "$(sed -nE "$outline" "$1/$2.de.html")" ]
}

# notices_are_complete NOTICES BUILD [--with PACKAGE]: every library that is linked in has its notice, and a library
# that nobody has listed ends the packing.
notices_are_complete() {
  local library
  # Those of the project itself have no full path, or one in its build folder.
  grep -ohE ' /[^ ]+/lib[[:alnum:]_]+[.]a\b' "$2/build.ninja" | grep -vF " $2/" |
    sed 's|.*/lib\(.*\)[.]a|\1|' | sort -u >linked.txt
  [ -s linked.txt ] || return 1
  for library in $(sed 's/^z$/zlib/;s/^zip$/libzip/;s/^md$/libmd/;s/^hwy$/Highway/' linked.txt) libstdc++ Eigen Boost CLI11 JSON; do
    # By its title, once in the list and once above its notice.
    [ "$(grep -cE "^[^ ].*$library|^$library" "$1")" -ge 2 ] || { echo "no notice of $library" >&2; return 1; }
  done
  ! "$source/packaging/make-notices" "$2" --with base-files >/dev/null 2>&1
}
