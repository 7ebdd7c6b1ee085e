#!/usr/bin/env bash
# Signs a windows build's packages with Authenticode (SHA-256): the staged plug-in first, then the
# MSI and the zip are made again from the stage that holds it, then the MSI is signed.
#
#   scripts/sign.sh (--pfx FILE | --pkcs11-module LIB --pkcs11-cert URI --pkcs11-key URI)
#                   [--password-env VAR | --password-file FILE] [--timestamp URL]
#                   [--description TEXT] [--url URL] [--package DIR]
#
# The password of the .pfx, or the token's PIN, comes from an environment variable or from the
# first line of a file, never from the command line, so that it stays out of logs and process
# lists. Without --timestamp the signatures are not time-stamped and stop being valid when the
# certificate expires: for tests only. --package defaults to build/windows/package.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

fail() {
  echo "sign.sh: $*" >&2
  exit 1
}

usage() {
  echo "usage:" >&2
  sed -n '5,7p' "$0" | sed 's/^#//' >&2
  exit 2
}

pfx="" pkcs11_module="" pkcs11_cert="" pkcs11_key=""
password_env="" password_file="" timestamp=""
description="Quorvel Omni Importer" url="" package="$root/build/windows/package"
while [ $# -gt 0 ]; do
  [ $# -ge 2 ] || usage
  case $1 in
    --pfx) pfx=$2 ;;
    --pkcs11-module) pkcs11_module=$2 ;;
    --pkcs11-cert) pkcs11_cert=$2 ;;
    --pkcs11-key) pkcs11_key=$2 ;;
    --password-env) password_env=$2 ;;
    --password-file) password_file=$2 ;;
    --timestamp) timestamp=$2 ;;
    --description) description=$2 ;;
    --url) url=$2 ;;
    --package) package=$2 ;;
    *) usage ;;
  esac
  shift 2
done

command -v osslsigncode >/dev/null || fail "osslsigncode is not installed: run scripts/setup.sh"

# What the signing key is, as osslsigncode's options; checked before any file is touched.
key_options=()
if [ -n "$pfx" ]; then
  [ -z "$pkcs11_module" ] || fail "give either --pfx or --pkcs11-module, not both"
  [ -f "$pfx" ] || fail "certificate file not found: $pfx"
  key_options=(-pkcs12 "$pfx")
elif [ -n "$pkcs11_module" ]; then
  [ -f "$pkcs11_module" ] || fail "PKCS#11 module not found: $pkcs11_module"
  [ -n "$pkcs11_cert" ] && [ -n "$pkcs11_key" ] ||
    fail "a token needs --pkcs11-cert and --pkcs11-key, the pkcs11: URIs of its certificate and key"
  key_options=(-pkcs11module "$pkcs11_module" -pkcs11cert "$pkcs11_cert" -key "$pkcs11_key")
else
  fail "no certificate: give --pfx FILE, or --pkcs11-module for a hardware token"
fi

if [ -n "$password_env" ]; then
  [ -n "${!password_env+set}" ] || fail "the environment variable $password_env is not set"
elif [ -n "$password_file" ]; then
  [ -r "$password_file" ] || fail "password file not readable: $password_file"
elif [ -n "$pfx" ]; then
  fail "the certificate's password is missing: give --password-env VAR or --password-file FILE"
fi

# Prints the password on standard output, for osslsigncode to read through a pipe.
password() {
  if [ -n "$password_env" ]; then
    printf '%s' "${!password_env}"
  elif [ -n "$password_file" ]; then
    head -n 1 "$password_file" | tr -d '\r\n'
  fi
}

# A .pfx exported by older Windows versions uses algorithms that OpenSSL 3 keeps in its legacy
# provider.
pfx_opens() {
  openssl pkcs12 -in "$pfx" -noout -passin fd:3 3< <(password) 2>/dev/null ||
    openssl pkcs12 -legacy -in "$pfx" -noout -passin fd:3 3< <(password) 2>/dev/null
}
if [ -n "$pfx" ]; then
  pfx_opens || fail "the certificate $pfx does not open with the password given (wrong password, or not a PKCS#12 file)"
fi

prm="$package/stage/QuorvelOmniImporter.prm"
[ -f "$prm" ] && [ -f "$package/make_packages.cmake" ] ||
  fail "no packages of a windows build in $package: run scripts/build.sh windows first"

sign_options=(-h sha256 -n "$description")
[ -z "$url" ] || sign_options+=(-i "$url")
[ -z "$timestamp" ] || sign_options+=(-ts "$timestamp")

pass_options=()
[ -z "$password_env$password_file" ] || pass_options=(-readpass /dev/fd/3)

# Signs FILE in place; a signature it already has is replaced.
sign_file() {
  local file=$1
  local signed="$file.signing"
  osslsigncode sign "${key_options[@]}" "${pass_options[@]}" "${sign_options[@]}" \
    -in "$file" -out "$signed" 3< <(password) >/dev/null || {
    rm -f "$signed"
    fail "signing $file failed${timestamp:+ (is the time-stamp server $timestamp reachable?)}"
  }
  chmod --reference="$file" "$signed"
  mv "$signed" "$file"
  echo "signed $file"
}

sign_file "$prm"
cmake -P "$package/make_packages.cmake"
msi=("$package"/*.msi)
[ -f "${msi[0]}" ] || fail "no MSI was made in $package"
sign_file "${msi[0]}"
