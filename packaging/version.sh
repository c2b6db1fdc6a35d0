# shellcheck shell=bash disable=SC2154 # $root is not set here
# For the scripts that pack, which set $root: the product's version, and the surroundings in which the same commit
# gives the same bytes. All files get the time of the commit.
version=$(sed -nE 's/^project\(.*VERSION ([0-9.]+).*/\1/p' "$root/CMakeLists.txt")
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct 2>/dev/null || stat -c %Y "$root/CMakeLists.txt")}
export version SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8
