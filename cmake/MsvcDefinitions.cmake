# The definitions that every MSVC compile gets, in a file of their own so that
# cmake/check_crt_deprecations.cmake reads the very list that the build applies.
set(QUORVEL_MSVC_DEFINITIONS _CRT_SECURE_NO_WARNINGS)
