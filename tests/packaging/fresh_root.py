"""Fresh systems to install packages in: a minimal Debian and what is asked for, in memory.

To be used in a mount namespace and a process namespace of its own: whatever is mounted and
started here ends with them, also when this process is killed. The systems are kept as archives,
so that only the first use of one needs the network.
"""

import hashlib
import os
import subprocess
import sys

NOT_COMPARED = ("dev", "proc", "tmp", "var/cache/ldconfig", "var/lib/dpkg", "var/log")
ENVIRONMENT = {"PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
               "LANG": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive"}


def say(text):
    print(f"  {text}", file=sys.stderr, flush=True)


def run(*command, **options):
    """The output of a command that must succeed."""
    result = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            **options)
    if result.returncode != 0:
        raise AssertionError(f"{' '.join(command)}: exit code {result.returncode}\n"
                             + result.stdout)
    return result.stdout


class FreshRoot:
    """A system with the packages, their dependencies and nothing that they only recommend.

    `cache` is the directory of the archives, `place` an empty one that it is mounted on, `suite`
    the release of Debian.
    """

    def __init__(self, cache, place, name, packages, suite):
        self.path = place
        self.suite = suite
        os.makedirs(cache, exist_ok=True)
        run("mount", "-t", "tmpfs", "-o", "size=4g,mode=755", "tmpfs", place)
        wanted = sorted(set(packages))
        key = hashlib.sha256(" ".join([suite, *wanted]).encode()).hexdigest()[:12]
        archive = os.path.join(cache, f"{name}-{suite}-{key}.tar.zst")
        if os.path.exists(archive):
            say(f"unpacking the {name}'s system ({suite})")
            self._unpack(archive)
            self._mount()
        else:
            base = os.path.join(cache, f"base-{suite}.tar.zst")
            run(os.path.join(os.path.dirname(os.path.abspath(__file__)), "make_base"), suite, base)
            self._unpack(base)
            self._mount()
            self._add(wanted)
            self._forget_others(cache, f"{name}-{suite}")
            self._pack(archive)

    def _write(self, name, text, mode):
        path = os.path.join(self.path, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, mode)

    def _add(self, packages):
        say(f"downloading {len(packages)} packages and their dependencies")
        with open("/etc/resolv.conf", encoding="utf-8") as file:
            self._write("etc/resolv.conf", file.read(), 0o644)
        proxies = {name: os.environ[name] for name in ("http_proxy", "https_proxy")
                   if name in os.environ}
        self.run("apt-get", "update", **proxies)
        self.run("apt-get", "install", "-y", "--no-install-recommends", *packages, **proxies)
        self.run("apt-get", "clean")

    def _mount(self):
        run("mount", "-t", "proc", "proc", f"{self.path}/proc")
        # Not the machine's /dev itself: nothing in here may remove its nodes.
        run("mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", f"{self.path}/dev")
        for node in ("null", "zero", "full", "random", "urandom", "tty"):
            self._write(f"dev/{node}", "", 0o666)
            run("mount", "--bind", f"/dev/{node}", f"{self.path}/dev/{node}")
        os.mkdir(f"{self.path}/dev/shm", 0o1777)

    def _unpack(self, archive):
        run("tar", "--zstd", "-xpf", archive, "-C", self.path)

    def _pack(self, archive):
        run("tar", "--zstd", "--one-file-system", "-cpf", archive + ".new", "-C", self.path, ".")
        os.rename(archive + ".new", archive)

    @staticmethod
    def _forget_others(cache, name):
        for other in os.listdir(cache):
            if other.startswith(name + "-"):
                os.unlink(os.path.join(cache, other))

    # ---- what can be done in it

    @staticmethod
    def _options(environment):
        return {"env": {**ENVIRONMENT, **environment}, "stdin": subprocess.DEVNULL}

    def run(self, *command, **environment):
        """The output of a command that must succeed."""
        return run("chroot", self.path, *command, **self._options(environment))

    def run_as_user(self, *command, **environment):
        return run("chroot", "--userspec=nobody:nogroup", self.path, *command,
                   **self._options(environment))

    def start_as_user(self, *command, **environment):
        return subprocess.Popen(
            ["chroot", "--userspec=nobody:nogroup", self.path, *command], text=True,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **self._options(environment))

    def install(self, *paths):
        """Installs package files; fails when something that they depend on is missing."""
        for path in paths:
            run("cp", path, f"{self.path}/tmp/")
        files = [f"/tmp/{os.path.basename(path)}" for path in paths]
        self.run("dpkg", "--install", *files)
        self.run("rm", *files)

    def purge(self, *packages):
        self.run("dpkg", "--purge", *packages)

    def state(self):
        """Everything that installing may change, to be compared: path to what it is."""
        found = {"packages": self.run("dpkg-query", "-W"), "libraries": self.run("ldconfig", "-p")}
        for directory, folders, files in os.walk(self.path):
            inside = os.path.relpath(directory, self.path)
            folders[:] = [each for each in folders
                          if os.path.normpath(f"{inside}/{each}") not in NOT_COMPARED]
            for name in folders + files:
                status = os.lstat(os.path.join(directory, name))
                is_folder = name in folders and not os.path.islink(os.path.join(directory, name))
                found[os.path.normpath(f"{inside}/{name}")] = (
                    status.st_mode, status.st_uid,
                    None if is_folder else (status.st_size, status.st_mtime_ns))
        del found["etc/ld.so.cache"]  # "libraries" says what is in it
        return found
