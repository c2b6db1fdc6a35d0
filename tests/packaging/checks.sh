# shellcheck shell=bash
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
