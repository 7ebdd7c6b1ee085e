#!/usr/bin/env bash
# Signs a copy of the build's packages with a throw-away certificate; checks that the plug-in and
# the MSI carry valid SHA-256 signatures over their current bytes, that the MSI and the zip hold
# the signed plug-in, that one changed byte breaks either signature, and that a wrong password, a
# missing certificate and a missing build are refused before any file changes. The build's own
# packages are left as they are.
#   signing_test.sh PACKAGE_DIR SIGN_SH
set -euo pipefail
package=$1 sign=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
check() { if eval "$1"; then echo "ok: $2"; else fail "$2"; fi; }

# A self-signed code-signing certificate, trusted by verification through -CAfile alone.
export SIGNING_TEST_PASSWORD="throw-away password"
openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "/CN=Quorvel throw-away signer" \
  -addext extendedKeyUsage=codeSigning -addext keyUsage=digitalSignature \
  -keyout "$work/key.pem" -out "$work/cert.pem" 2>/dev/null
openssl pkcs12 -export -inkey "$work/key.pem" -in "$work/cert.pem" -out "$work/cert.pfx" \
  -passout env:SIGNING_TEST_PASSWORD

own_files() { sha256sum "$package"/*.msi "$package"/*.zip "$package"/stage/*; }
own_before=$(own_files)
copy="$work/package"
cp -r "$package" "$copy"
prm="$copy/stage/QuorvelOmniImporter.prm"
msi=$(echo "$copy"/*.msi)
zip=$(echo "$copy"/*.zip)
copy_before=$(sha256sum "$prm" "$msi")

signs() { bash "$sign" --pfx "$work/cert.pfx" --password-env SIGNING_TEST_PASSWORD "$@"; }
refused() { ! "$@" 2>"$work/error" >/dev/null && grep -q "$refusal" "$work/error"; }

refusal="wrong password"
check 'SIGNING_TEST_PASSWORD=wrong refused signs --package "$copy"' "a wrong password is refused"
refusal="certificate file not found"
check 'refused bash "$sign" --pfx "$work/none.pfx" --password-env SIGNING_TEST_PASSWORD --package "$copy"' \
  "a missing certificate is refused"
refusal="run scripts/build.sh windows first"
check 'refused signs --package "$work/no-build"' "a missing build is refused"
check '[ "$(sha256sum "$prm" "$msi")" = "$copy_before" ]' "and nothing was changed"

signs --description "Quorvel test signature" --url https://quorvel.example/ --package "$copy" >/dev/null

verified() { osslsigncode verify -CAfile "$work/cert.pem" -in "$1" >"$work/verify.txt" 2>&1; }
signed_as_asked() {
  verified "$1" && grep -Eq "Message digest algorithm +: SHA256" "$work/verify.txt" &&
    grep -q "Text description: Quorvel test signature" "$work/verify.txt" &&
    grep -q "URL description: https://quorvel.example/" "$work/verify.txt"
}
check 'signed_as_asked "$prm"' "the plug-in carries a valid SHA-256 signature with the description and URL"
check 'signed_as_asked "$msi"' "the MSI carries a valid SHA-256 signature with the description and URL"

mkdir "$work/msi" "$work/zip"
msiextract -C "$work/msi" "$msi" >/dev/null
installed=$(find "$work/msi" -name QuorvelOmniImporter.prm)
check 'verified "$installed" && cmp -s "$installed" "$prm"' "the MSI installs the signed plug-in"
(cd "$work/zip" && cmake -E tar xf "$zip")
check 'cmp -s "$work/zip/QuorvelOmniImporter.prm" "$prm"' "the zip holds the signed plug-in"

# The middle of the plug-in is code; the middle of the MSI is its embedded cabinet.
flip_middle_byte() {
  local offset byte
  offset=$(($(stat -c %s "$1") / 2))
  byte=$(od -An -tu1 -j "$offset" -N 1 "$1")
  printf "\\$(printf %03o $((byte ^ 0xff)))" | dd of="$1" bs=1 seek="$offset" conv=notrunc status=none
}
for file in "$prm" "$msi"; do
  changed="$work/changed.${file##*.}"
  cp "$file" "$changed"
  flip_middle_byte "$changed"
  check '! verified "$changed"' "one changed byte breaks the signature of the ${file##*.}"
done

check '[ "$(own_files)" = "$own_before" ]' "the build's own packages are left as they are"

[ "$failures" -eq 0 ]
