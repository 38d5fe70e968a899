# The tests that are not run with an installed FastDB, by what FastDB doesn't promise; docs/realtime-backends.md describes
# it. Patterns as GoogleTest's filter takes them.
set(left_out_with_fastdb "")
