#!/usr/bin/env bash
# Links the libraries of a relink kit with a changed libexif, as a user may do, and expects the engine to use it: the
# camera model that it reads is another one.
#
#   relink_kit.sh KIT SOURCE
#
# KIT is the unpacked kit, which stays as it is; SOURCE the tree of lumvik. Needs the compilers that relink.sh names, and
# Wine for Windows.
set -euo pipefail

source=$(realpath "$2")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp -r "$1" "$folder/kit"
cd "$folder"

fail() {
  echo "$*" >&2
  exit 1
}

cc=gcc
ar=ar
library=kit/relinked/liblumvik.so.1.0.0
run=(env LD_LIBRARY_PATH=kit/relinked)
if [[ -e kit/lumvik.dll.arguments ]]; then
  cc=x86_64-w64-mingw32-gcc
  ar=x86_64-w64-mingw32-ar
  library=kit/relinked/lumvik.dll
  run=(env WINEPATH=kit/relinked wine)
fi

cat >model.c <<'END'
#include <lumvik.h>
#include <stdio.h>

int main(int argc, char** argv) {
  EngineContext* context = lumvik_create_context();
  ExifInfo info;
  if (argc != 2 || lumvik_load_arw(context, argv[1], 1) != LUMVIK_OK) return 1;
  if (lumvik_get_exif(context, &info) != LUMVIK_OK) return 1;
  fputs(info.model, stdout);
  lumvik_destroy_context(context);
  return 0;
}
END

# expect_model MODEL
expect_model() {
  local model
  kit/relink.sh
  "$cc" model.c -I"$source/include" "$library" -o model.exe
  ln -sf liblumvik.so.1.0.0 kit/relinked/liblumvik.so.1
  model=$("${run[@]}" ./model.exe "$source/tests/data/eiffel_gps_north_east.jpg")
  [[ $model == "$1" ]] || fail "the camera model is '$model' instead of '$1'"
}

expect_model FinePixS2Pro

dpkg-source --no-check --extract kit/sources/libexif_*.dsc libexif >/dev/null
sed -i 's/^exif_entry_get_value (/exif_entry_get_unchanged_value (/' libexif/libexif/exif-entry.c
cat >>libexif/libexif/exif-entry.c <<'END'

const char *
exif_entry_get_value (ExifEntry *e, char *val, unsigned int maxlen)
{
	exif_entry_get_unchanged_value (e, val, maxlen);
	if (e->tag == EXIF_TAG_MODEL) snprintf (val, maxlen, "changed");
	return val;
}
END
echo '#include <stdint.h>' >libexif/libexif/_stdint.h
printf '#define %s\n' 'GETTEXT_PACKAGE "libexif-12"' 'LOCALEDIR ""' >libexif/config.h
mkdir objects
(cd objects && "$cc" -c -w -O2 -fPIC -I../libexif ../libexif/libexif/{.,*}/*.c)
rm kit/lib/libexif.a
"$ar" rc kit/lib/libexif.a objects/*.o

expect_model changed
