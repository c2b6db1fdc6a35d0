#!/bin/sh
# instruction_sets.sh NM OBJDUMP ARCHIVE: holds a library to how it picks its instructions.
# - Only the objects named *_avx2 hold AVX instructions: the others run on every processor.
# - What those objects define for the whole program bears the instruction set in its name. A function of
#   any other name could exist elsewhere too, and the linker keeps but one of the two.
nm=$1 objdump=$2 archive=$3
problems=$(
  "$objdump" -d --no-show-raw-insn "$archive" | awk '
    / file format / { object = $1; all++; is_avx2 = object ~ /_avx2\./; if (is_avx2) avx2_objects++; next }
    /^[0-9a-f]+ </ { name = $2; next }
    # Every AVX mnemonic starts with a v; the others that do are the virtual machine'"'"'s and the verify ones.
    $2 ~ /^v/ && $2 !~ /^(ver[rw]|vm(call|launch|mcall|read|write|xoff|xon|resume|clear|func|ptrld|ptrst))/ {
      if (is_avx2) found++
      else if (object != last) { print object ": " name " " $0; last = object }
    }
    END {
      if (avx2_objects == 0 || avx2_objects == all || found < 100) print "not a library of both kinds"
    }'
  "$nm" --defined-only -C "$archive" | awk '
    /^[^ ]+:$/ { is_avx2 = /_avx2\./; next }
    is_avx2 && $2 ~ /^[TWVu]$/ && $2 != "V" && tolower($0) !~ /avx2/ { print "shared by name: " $0 }'
)
[ -z "$problems" ] && exit 0
echo "$problems"
exit 1
