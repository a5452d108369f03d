#!/usr/bin/env bash
# Makes the pictures of docs/adjustments.md and the README, docs/pictures/*.jpg, from the sample photograph with the
# lumvik command, installing and building first what that takes. A picture is a row of panels, each developed with the
# settings given below. Grain is random, so its picture differs from run to run.
#
#   scripts/make-doc-pictures.sh [NAME...]   all pictures, or only these
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

"$ROOT/scripts/install-dependencies.sh" --build --pictures
configure release "$ROOT/build/release"
cmake --build "$ROOT/build/release" --target lumvik_cli

PICTURES=$ROOT/docs/pictures
LUMVIK=$ROOT/build/release/apps/lumvik/lumvik
PHOTO=$ROOT/samples/sample_small.ARW
PANEL=300x200
wanted=" $* "
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$PICTURES"

# compose NAME REGION PANEL...: PANEL is a string of options of `lumvik develop`. REGION is "whole" or a part of the
# developed photograph (WIDTHxHEIGHT+X+Y), shown at 100 % if it has the size of a panel.
compose() {
  local name=$1 region=$2 panel number=0
  local -a options crop=()
  shift 2
  [[ $wanted == "  " || $wanted == *" $name "* ]] || return 0
  [[ $region == whole ]] || crop=(-crop "$region" +repage)
  rm -f "$work"/panel*
  for panel in "$@"; do
    eval "options=($panel)"
    "$LUMVIK" develop "$PHOTO" -o "$work/developed.tif" "${options[@]}" >/dev/null
    convert "$work/developed.tif" "${crop[@]}" -resize "$PANEL" -gravity center -background white \
      -extent "$PANEL" -depth 8 "$work/panel$((number++)).png"
  done
  convert "$work"/panel?.png -bordercolor white -border 2x0 +append -shave 2x0 -strip \
    -sampling-factor 4:2:0 -quality 80 "$PICTURES/$name.jpg"
  echo "$PICTURES/$name.jpg"
}

# imported ATTRIBUTES [ELEMENTS]: the option for the settings imported from an XMP sidecar with these properties, whose
# prefix is "crs".
imported() {
  cp "$PHOTO" "$work/imported.ARW"
  cat >"$work/imported.xmp" <<XMP
<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:crs="http://ns.adobe.com/camera-raw-settings/1.0/" $1>${2-}</rdf:Description>
</rdf:RDF></x:xmpmeta>
XMP
  rm -f "$work/imported.json"
  "$LUMVIK" settings import "$work/imported.ARW" -o "$work/imported.json" 2>/dev/null
  printf -- '--settings %s\n' "$work/imported.json"
}

sky_and_hills=900x600+560+130
cliff=300x200+300+480
ridge=300x200+780+330
corner=150x100+120+840

compose overview whole "" "--shadows 50 --contrast 35 --vibrance 60 --clarity 30" "--saturation -100 \
  --clarity 50 --tone-curve '0,0 0.3,0.2 0.7,0.8 1,1' --crop 0.3,0.2,0.7,0.7"

compose temperature whole "--temperature 4500" "--temperature 5500" "" "--temperature 9000"
compose tint whole "--tint -75" "" "--tint 75"
compose exposure whole "--exposure -1" "" "--exposure 1"
compose brightness whole "--brightness -60" "" "--brightness 60"
compose highlights whole "--highlights -100" "" "--highlights 100"
compose shadows whole "--shadows -100" "" "--shadows 100"
compose whites whole "--whites -100" "" "--whites 100"
compose blacks whole "--blacks -100" "" "--blacks 100"
compose contrast whole "--contrast -60" "" "--contrast 60"
compose tone-curve whole "" "--tone-curve '0,0 0.25,0.12 0.75,0.88 1,1'" \
  "--tone-curve-red '0,0 0.5,0.6 1,1' --tone-curve-blue '0,0.1 1,0.85'"

compose clarity "$sky_and_hills" "--clarity -100" "" "--clarity 100"
compose texture "$cliff" "--texture -100" "" "--texture 100"
compose dehaze whole "" "--dehaze 35" "--dehaze 70"
compose saturation whole "--saturation -100" "" "--saturation 100"
compose vibrance whole "--vibrance -100" "" "--vibrance 100"
compose hsl whole "--hsl blue=-40,0,0" "" "--hsl orange=0,60,20 --hsl red=0,60,20"
compose split-toning whole "" "--split-highlights 40,60 --split-shadows 20,60" \
  "--saturation -100 --split-highlights 60,100 --split-shadows 60,100"

compose nr-luminance "$cliff" "" "--nr-luminance 50" "--nr-luminance 100"
compose nr-color "$cliff" "" "--nr-color 50" "--nr-color 100"
compose sharpening "$cliff" "" "--sharpening-amount 75" "--sharpening-amount 150"

compose distortion whole "--distortion -30" "" "--distortion 30"
compose ca-correction "$corner" "" "--ca-correction 100"
compose lens-vignette whole "" "--lens-vignette 100"
compose defringe whole "--temperature 5500" "--temperature 5500 --defringe 100"

compose flips whole "" "--flip-h" "--flip-v"
compose rotation whole "--rotation -10" "" "--rotation 10"
compose perspective-h whole "--perspective-h -100" "" "--perspective-h 100"
compose perspective-v whole "--perspective-v -100" "" "--perspective-v 100"
compose crop whole "" "--crop 0.35,0.25,0.6,0.6"

compose vignette whole "" "--vignette-amount 60" "--vignette-amount 60 --vignette-midpoint 80" \
  "--vignette-amount 60 --vignette-roundness -100"
compose grain "$ridge" "" "--grain-amount 60 --grain-size 0" "--grain-amount 60 --grain-size 100"

# Imported from XMP. The sample's white balance as shot is 4726 kelvin.
compose import-temperature whole "" '$(imported "crs:Temperature=\"4300\" crs:Tint=\"-2\"")' \
  '$(imported "crs:Temperature=\"5500\" crs:Tint=\"-2\"")'
compose import-vignette whole "" '$(imported "crs:PostCropVignetteAmount=\"+60\"")' \
  '$(imported "crs:PostCropVignetteAmount=\"-60\" crs:Exposure2012=\"0\"")'
compose import-look whole "" '$(imported "crs:Contrast2012=\"+35\" crs:Blacks2012=\"+30\" \
  crs:HueAdjustmentBlue=\"-40\" crs:SaturationAdjustmentBlue=\"-35\" crs:LuminanceAdjustmentOrange=\"+20\"" \
  "<crs:ToneCurvePV2012><rdf:Seq><rdf:li>0, 20</rdf:li><rdf:li>64, 56</rdf:li><rdf:li>192, 204</rdf:li>
  <rdf:li>255, 245</rdf:li></rdf:Seq></crs:ToneCurvePV2012>")'
