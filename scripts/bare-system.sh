# shellcheck shell=bash
# Sourced by the scripts that test on a bare system: makes a root with nothing but the minimal system, of the host's
# release and from the host's package sources or of another release, and runs commands in it.

# Debian's own among the host's package sources, in the format of sources.list.
debian_sources() {
  # shellcheck disable=SC2016 # apt expands the names
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' | sort -u
}

# copy_registry_settings ROOT: what it takes to reach the host's package sources.
copy_registry_settings() {
  local root=$1 path
  debian_sources >"$root/etc/apt/sources.list"
  apt-config dump | grep '^Acquire::[^ ]* "' | grep -v '^Acquire::IndexTargets' >"$root/etc/apt/apt.conf.d/00host"
  for path in /etc/apt/{auth.conf,auth.conf.d,keyrings,trusted.gpg,trusted.gpg.d} /usr/share/keyrings \
    /etc/ssl/certs /usr/local/share/ca-certificates /etc/resolv.conf /etc/hosts; do
    if [[ -e $path ]]; then
      mkdir -p "$root$(dirname "$path")"
      cp -rL --remove-destination "$path" "$root$(dirname "$path")/"
    fi
  done
}

# make_bare_root ROOT [CODENAME MIRROR KEYRING [SCRIPT]]: fills the empty folder ROOT; fails with the reason on standard
# error. SCRIPT is debootstrap's for a release that it does not know.
make_bare_root() {
  local root=$1 codename=${2:-} mirror=${3:-} keyring=${4:-} log=$1/bare-system.log
  [[ -e /etc/debian_version ]] || { echo "this system is not Debian" >&2; return 1; }
  ((EUID == 0)) || { echo "only root can make a bare system" >&2; return 1; }
  "$ROOT/scripts/install-dependencies.sh" --bare-system || { echo "debootstrap cannot be installed" >&2; return 1; }
  unshare --mount mount --rbind /dev "$root" 2>/dev/null || { echo "mounting is not permitted" >&2; return 1; }

  if [[ ! $codename ]]; then
    codename=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
    [[ $(debian_sources) ]] || apt-get -q update || return
    mirror=$(debian_sources | awk -v release="$codename" '$3 == release && $4 == "main" { print $2; exit }')
    [[ $mirror ]] || { echo "apt has no source of $codename" >&2; return 1; }
  fi

  chmod 755 "$root" # apt downloads as an unprivileged user
  mkdir -p "$root/etc/dpkg/dpkg.cfg.d"
  echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/bare-system" # what will be deleted need not be synced to disk
  # The proxy of apt serves debootstrap as well.
  if ! (
    eval "$(apt-config shell http_proxy Acquire::http::Proxy https_proxy Acquire::https::Proxy)"
    export ${http_proxy:+http_proxy} ${https_proxy:+https_proxy}
    unshare --mount debootstrap --variant=minbase ${keyring:+--keyring="$keyring"} "$codename" "$root" "$mirror" ${5:+"$5"}
  ) >"$log" 2>&1; then
    tail "$log" >&2
    rm "$log"
    return 1
  fi
  rm "$log"
  copy_registry_settings "$root"
  [[ ! ${3:-} ]] || echo "deb $mirror $codename main" >"$root/etc/apt/sources.list"
}

# in_bare_root ROOT SCRIPT: runs a bash script with the environment of a fresh login. Its mounts exist only in its own
# mount namespace: none is left behind, and removing the root cannot reach into them.
in_bare_root() {
  # shellcheck disable=SC2016 # expanded within
  unshare --mount bash -euo pipefail -c '
    root=$1
    script=$2
    for tree in proc sys dev; do
      mount --rbind "/$tree" "$root/$tree"
    done
    kept=()
    for name in CI http_proxy https_proxy no_proxy HTTP_PROXY HTTPS_PROXY NO_PROXY; do
      [[ ! -v $name ]] || kept+=("$name=${!name}")
    done
    exec chroot "$root" env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
      DEBIAN_FRONTEND=noninteractive "${kept[@]}" bash -euo pipefail -c "$script"
  ' bash "$1" "$2" </dev/null
}
