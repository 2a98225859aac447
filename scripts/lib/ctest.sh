# scripts/lib/ctest.sh - runs the tests of one build and counts them. Sourced after common.sh.
# shellcheck shell=bash

# run_ctest FOLDER: runs the tests as many at a time as there are processors. Prints a line of progress now and then
# and the output of what fails; sets ctest_passed, ctest_failed, ctest_skipped, ctest_seconds and ctest_failures.
run_ctest() {
  local folder=$1 started=$SECONDS log=$1/ctest.log total not_passed
  ctest_passed=0 ctest_failed=0 ctest_skipped=0
  ctest_failures=()
  ctest --test-dir "$folder" --parallel "$(processors)" --output-on-failure --no-tests=error 2>&1 |
    tee "$log" | print_progress || true
  ctest_seconds=$((SECONDS - started))

  # "98% tests passed, 1 tests failed out of 50"; skipped tests count as passed there.
  total=$(LC_ALL=C sed -n 's/^[0-9]*% tests passed, [0-9]* tests\? failed out of \([0-9]*\).*/\1/p' "$log" | tail -n 1)
  not_passed=$(LC_ALL=C sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests\? failed out of.*/\1/p' "$log" | tail -n 1)
  if [[ -z $total ]]; then
    ctest_failed=1
    ctest_failures=("ctest ended without a result, see $log")
    return
  fi
  ctest_skipped=$(LC_ALL=C grep -acE '^[[:space:]]+[0-9]+ - .* \((Skipped|Disabled)\)$' "$log") || true
  ctest_failed=$not_passed
  ctest_passed=$((total - not_passed - $(LC_ALL=C grep -acE '^[[:space:]]+[0-9]+ - .* \(Skipped\)$' "$log" || true)))
  mapfile -t ctest_failures < <(
    LC_ALL=C sed -n '/^The following tests FAILED:/,$p' "$log" | LC_ALL=C sed -nE 's/^[[:space:]]+[0-9]+ - (.*)$/\1/p'
  )
}

# Passes on what ctest prints about failures, and every 250th line about a test that passed.
print_progress() {
  LC_ALL=C awk '
    /^ *Start +[0-9]+: / || /^Test project / || /^Internal ctest / || /^$/ { next }
    /^ *[0-9]+\/[0-9]+ Test +#[0-9]+: .*(Passed|\*\*\*Skipped|\*\*\*Not Run \(Disabled\))/ {
      if (++count % 250 == 0) { split($1, place, "/"); print "   " count " of " place[2] " tests"; fflush() }
      next
    }
    { print; fflush() }'
}
