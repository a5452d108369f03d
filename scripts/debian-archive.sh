# shellcheck shell=bash
# Sourced by the scripts that download packages from Debian's archive without installing them. They use indexes of their
# own: the system may have none of that release or of source packages, and its configuration is not touched.

# use_archive FOLDER: where the indexes are kept; sets the options of apt for them.
use_archive() {
  local folder=$1
  apt_options=(
    -q
    -o Dir::Etc::sourcelist="$folder/sources.list"
    -o Dir::Etc::sourceparts="$folder/parts"
    -o Dir::State::lists="$folder/lists"
    -o Dir::State::status=/dev/null
    -o Dir::Cache="$folder/cache"
    -o Acquire::Retries=3
    -o APT::Sandbox::User=root
  )
  mkdir -p "$folder"/{parts,lists/partial,cache/archives/partial}
  touch "$folder/sources.list"
}

# index_sources FOLDER: the source packages of the host's release.
index_sources() {
  use_archive "$1"
  if [[ -e /etc/apt/sources.list ]]; then
    sed -n 's/^deb /deb-src /p' /etc/apt/sources.list >"$1/sources.list"
  fi
  if [[ -e /etc/apt/sources.list.d/debian.sources ]]; then
    sed 's/^Types:.*/Types: deb-src/' /etc/apt/sources.list.d/debian.sources >"$1/parts/debian.sources"
  fi
  apt-get "${apt_options[@]}" update
}

# debian_mirror: that of the host's package sources.
debian_mirror() {
  local mirror
  mirror=$(cat /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources 2>/dev/null |
    grep -oE '^[^#]*https?://[^ ]*/debian/?( |$)' | grep -oE -m 1 'https?://[^ ]*' || true)
  echo "${mirror:-http://deb.debian.org/debian}"
}

# index_release FOLDER CODENAME: the packages of another release, from the host's mirror or, once they have left it, from
# the archive of old releases. The index of such a release has expired; its signature is still checked.
index_release() {
  local folder=$1 codename=$2 mirror
  for mirror in "$(debian_mirror)" http://archive.debian.org/debian; do
    use_archive "$folder"
    apt_options+=(-o Acquire::Check-Valid-Until=false -o APT::Update::Error-Mode=any)
    echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror $codename main" >"$folder/sources.list"
    ! apt-get "${apt_options[@]}" update || return 0
  done
  fail "no mirror has Debian $codename"
}
