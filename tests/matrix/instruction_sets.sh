#!/bin/sh
# instruction_sets.sh OBJDUMP ARCHIVE...: holds libraries to how they pick their instructions.
# - Only functions that bear an instruction set in their name hold AVX instructions: the others run on every
#   processor. A function of any other name could also exist elsewhere, and the linker keeps but one of the two.
# - On Windows, none moves a vector of 256 or 512 bits to or from an aligned place: GCC does not align the stack for them.
objdump=$1
shift
problems=$(
  "$objdump" -d --no-show-raw-insn "$@" | awk '
    / file format / { is_windows = /pe-x86-64/; next }
    /^[0-9a-f]+ </ { name = $2; is_chosen = tolower(name) ~ /avx[23]/; next }
    is_windows && $2 ~ /^vmov(ap[sd]|dqa|ntdqa|ntp[sd])/ && /%[yz]mm/ && /\(/ { print name " aligned: " $0 }
    # Every AVX mnemonic starts with a v; the others that do are the virtual machine'"'"'s and the verify ones.
    $2 ~ /^v/ && $2 !~ /^(ver[rw]|vm(call|launch|mcall|read|write|xoff|xon|resume|clear|func|ptrld|ptrst))/ {
      if (is_chosen) found++
      else if (name != last) { print name " " $0; last = name }
    }
    /%zmm/ { wide++ }
    END { if (found < 100 || wide < 100) print "not a library of all instruction sets" }'
)
[ -z "$problems" ] && exit 0
echo "$problems"
exit 1
