# shellcheck shell=bash disable=SC2034,SC2016
# apt with the machine's own entries, less the security suite. Source it after lib.sh.

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# Writes a source list of the machine's Debian entries without the security suite, for programs and sources, fetches
# its indexes, and sets base_suite to apt's options to use nothing else. apt itself lists the entries, whichever form
# they were written in.
base_suite=()
use_base_suite() {
    local dir=$deps/apt key='' keyring=/usr/share/keyrings/debian-archive-keyring.gpg
    mkdir -p "$dir/lists/partial" || return 1
    if [ -f $keyring ]; then key="[signed-by=$keyring] "; fi
    apt-get indextargets --format '$(LABEL)|$(REPO_URI)|$(RELEASE)|$(COMPONENT)' 'Created-By: Packages' |
        sort -u | awk -F'|' -v key="$key" '$1 == "Debian" {
            print "deb " key $2 " " $3 " " $4
            print "deb-src " key $2 " " $3 " " $4 }' >"$dir/base.list"
    if [ ! -s "$dir/base.list" ]; then
        echo "E: apt knows no entry of the Debian archive" >&2
        return 1
    fi
    base_suite=(-o "Dir::Etc::sourcelist=$dir/base.list" -o Dir::Etc::sourceparts=/dev/null
        -o "Dir::State::lists=$dir/lists" -o APT::Sandbox::User=root)
    as_root apt-get "${base_suite[@]}" update
}
