# Sourced by ./run-short and ./run-long: what every run of a fuzz target shares.

sources=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$sources/../../build/asan
target=${1:-}
program=$build/bin/fuzz_$target
seeds=$sources/corpus/$target

if [ ! -d "$seeds" ]; then
    echo "usage: ${0##*/} TARGET, one of:" $(ls "$sources/corpus") >&2
    exit 2
fi

# Damaged data can ask for any amount of memory, which nobody gets.
export ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=512:detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1
options=(-malloc_limit_mb=1000000 -timeout=30 -verbosity=0 -print_final_stats=1 -artifact_prefix="$build/$target-")
if [ -f "$sources/$target.dict" ]; then
    options+=(-dict="$sources/$target.dict")
fi
