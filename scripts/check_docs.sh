#!/usr/bin/env bash
# Keeps the documents' checkable claims true: the tests, test programs and benchmarks they name
# exist, every log line number in docs/log.md is a call site and every call site is listed there,
# every document is linked from the README and every link leads to a file, and vcpkg.json carries
# the project's version. Prints each wrong claim and exits 1 when there is one.
# Usage: scripts/check_docs.sh [REPOSITORY_ROOT]
set -euo pipefail
cd "${1:-$(dirname "$0")/..}"

documents=(README.md docs/*.md)
failures=0

fail() {
  echo "check_docs: $*" >&2
  failures=$((failures + 1))
}

# Every test a --gtest_filter names ('Suite.Name' or 'Suite.*') is declared in tests/.
check_test_filters() {
  local filter suite name
  for filter in $(grep -ohE "gtest_filter='[A-Za-z0-9_]+\.[A-Za-z0-9_*]+'" "${documents[@]}" |
    sed -E "s/gtest_filter='(.*)'/\1/" | sort -u); do
    suite=${filter%%.*}
    name=${filter#*.}
    [ "$name" = '*' ] && name='[A-Za-z0-9_]+'
    grep -rqE "TEST(_F|_P)?\($suite, *$name\)" tests/ ||
      fail "no test $filter in tests/ (quoted in a --gtest_filter)"
  done
}

# Every `..._tests` program the documents quote is a ctest entry.
check_test_programs() {
  local program
  for program in $(grep -ohE '`[a-z_]+_tests`' "${documents[@]}" | tr -d '`' | sort -u); do
    grep -qE "(quorvel_test\(|add_test\(NAME )$program\b" tests/CMakeLists.txt ||
      fail "no test program $program in tests/CMakeLists.txt"
  done
}

# Every benchmark the documents name is in bench/.
check_benchmarks() {
  local benchmark
  for benchmark in $(grep -ohE '\bBM_[A-Za-z0-9_]+' "${documents[@]}" | sort -u); do
    grep -rqE "void $benchmark\(" bench/ || fail "no benchmark $benchmark in bench/"
  done
}

# docs/log.md's table rows and src/logging/log_sites.h name the same line numbers.
check_log_sites() {
  local documented sites
  documented=$(grep -oE '^\| [0-9]+ \| [EI] \|' docs/log.md | grep -oE '[0-9]+' | sort -u)
  sites=$(grep -oE '= [0-9]+;' src/logging/log_sites.h | grep -oE '[0-9]+' | sort -u)
  local site
  for site in $(comm -13 <(echo "$documented") <(echo "$sites")); do
    grep -q "SDK_File_Import:$site\b" docs/log.md ||
      fail "log line $site of src/logging/log_sites.h is not in docs/log.md"
  done
  for site in $(comm -23 <(echo "$documented") <(echo "$sites")); do
    fail "docs/log.md lists line $site, which src/logging/log_sites.h does not have"
  done
}

# The README links every document, and every relative link of a document leads to a file.
check_links() {
  local document target
  for document in docs/*.md; do
    grep -qF "]($document)" README.md || fail "README.md does not link $document"
  done
  for document in "${documents[@]}"; do
    for target in $(grep -oE '\]\([^)#:]+(#[^)]*)?\)' "$document" |
      sed -E 's/^\]\(([^)#]*).*/\1/'); do
      [ -e "$(dirname "$document")/$target" ] ||
        fail "$document links $target, which does not exist"
    done
  done
}

# vcpkg.json's version is the project's (CMakeLists.txt), which the packages and the plug-in carry.
check_version() {
  local project manifest
  project=$(grep -oE 'project\(QuorvelOmniImporter VERSION [0-9.]+' CMakeLists.txt |
    awk '{print $3}')
  manifest=$(grep -oE '"version-string": *"[^"]+"' vcpkg.json | sed -E 's/.*"([^"]+)"$/\1/')
  [ "$project" = "$manifest" ] ||
    fail "vcpkg.json's version $manifest is not the project's $project (CMakeLists.txt)"
}

check_test_filters
check_test_programs
check_benchmarks
check_log_sites
check_links
check_version
if [ "$failures" -gt 0 ]; then
  echo "check_docs: $failures wrong claims" >&2
  exit 1
fi
echo "check_docs: the documents' checked claims hold"
