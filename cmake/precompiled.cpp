// The source of targets that only precompile headers.
