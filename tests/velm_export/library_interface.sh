#!/bin/sh
# library_interface.sh LIBRARY: it exports the fourteen procedures and nothing else, and needs nothing but the host
# library and the standard libraries.
set -eu
LC_ALL=C
export LC_ALL

exported=$(nm -D --defined-only "$1" | awk '{ print $3 }' | sort | tr '\n' ' ')
expected='IMPORT_EXPORT boundaries constants dispexch flowpath flows importexport initial_conditions intro loads '
expected="${expected}parameters segment sys_info time_functions "
needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
failed=0
if [ "$exported" != "$expected" ]; then
    printf 'exported: %s\nexpected: %s\n' "$exported" "$expected"
    failed=1
fi
case "$needed" in
*libprevelmwdll.so*) ;;
*) echo 'libprevelmwdll.so is not needed'; failed=1 ;;
esac
for library in $needed; do
    case "$library" in
    libprevelmwdll.so | libstdc++.so.* | libgcc_s.so.* | libc.so.* | libm.so.*) ;;
    *) echo "needed beyond the standard libraries: $library"; failed=1 ;;
    esac
done
exit $failed
