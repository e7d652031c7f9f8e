# Minimal Debian systems on disk, for scripts to source, which are started in the tree's folder.
# They, and what they downloaded and compiled, are kept under ZELDLG_ROOTS.
roots=${ZELDLG_ROOTS:-$HOME/.cache/zeldlg-roots}

# make_root SUITE NAME: a new one with the tree as it is, in /tree-of-zeldlg. (Its name is
# looked for in what is built.)
make_root() {
    local suite=$1 root=$roots/root-$2
    tests/packaging/make_base "$suite" "$roots/base-$suite.tar.zst" >/dev/null
    rm -rf --one-file-system "$root"
    mkdir -p "$root/tree-of-zeldlg" "$root/root/.cache/ccache" "$roots/ccache" "$roots/apt-$suite/partial"
    tar --zstd -xpf "$roots/base-$suite.tar.zst" -C "$root"
    git ls-files -z --cached --others --exclude-standard |
        while IFS= read -rd '' file; do [ -e "$file" ] && printf '%s\0' "$file"; done |
        tar -c --null -T - | tar -x -C "$root/tree-of-zeldlg"
    # The checks of the source ask git what is in it.
    git -C "$root/tree-of-zeldlg" init -q
    git -C "$root/tree-of-zeldlg" add -A
}

# in_root SUITE NAME COMMAND...: with devices, processes and an empty /tmp of its own, without a
# terminal.
in_root() {
    local suite=$1 root=$roots/root-$2
    shift 2
    setsid bwrap --bind "$root" / --dev /dev --proc /proc --perms 1777 --tmpfs /tmp \
        --unshare-pid --unshare-ipc --die-with-parent --cap-add ALL \
        --ro-bind /etc/resolv.conf /etc/resolv.conf \
        --bind "$roots/apt-$suite" /var/cache/apt/archives \
        --bind "$roots/ccache" /root/.cache/ccache --clearenv --setenv HOME /root \
        --setenv PATH /usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        --setenv LANG C.UTF-8 --setenv DEBIAN_FRONTEND noninteractive \
        ${http_proxy:+--setenv http_proxy "$http_proxy"} --chdir /tree-of-zeldlg "$@" </dev/null
}
