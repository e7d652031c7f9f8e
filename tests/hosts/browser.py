"""A browser with the module over PKCS#11, and a server that asks it for a certificate."""

import contextlib
import http.server
import os
import ssl
import threading

from soft_token import run

# The preferences of a profile that nobody is asked about: nothing is fetched, no tab is shown
# beside the page, and the one certificate there is is chosen.
PREFERENCES = {
    "security.default_personal_cert": "Select Automatically",
    "browser.shell.checkDefaultBrowser": False,
    "browser.startup.homepage_override.mstone": "ignore",
    "browser.aboutwelcome.enabled": False,
    "datareporting.policy.dataSubmissionEnabled": False,
    "datareporting.policy.dataSubmissionPolicyBypassNotification": True,
    "toolkit.telemetry.reportingpolicy.firstRun": False,
    "trailhead.firstrun.didSeeAboutWelcome": True,
    "termsofuse.bypassNotification": True,
    "app.normandy.enabled": False,
    "app.update.auto": False,
    "extensions.update.enabled": False,
    "network.captive-portal-service.enabled": False,
    "network.connectivity-service.enabled": False,
    "browser.safebrowsing.malware.enabled": False,
    "browser.safebrowsing.phishing.enabled": False,
}


def make_certificates(folder, person):
    """In that folder: an authority (ca), a server (server) and a person (person), each with its
    key; the person's also in DER.
    """
    def path(name):
        return os.path.join(folder, name)

    def openssl(*words):
        run("openssl", *words)
    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=Test authority",
            "-days", "30", "-keyout", path("ca.key"), "-out", path("ca.pem"))
    for name, subject, extensions in (
            ("server", "/CN=localhost",
             "subjectAltName=DNS:localhost\nextendedKeyUsage=serverAuth"),
            ("person", f"/CN={person}", "extendedKeyUsage=clientAuth")):
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", subject, "-keyout",
                path(f"{name}.key"), "-out", path(f"{name}.csr"))
        with open(path(f"{name}.ext"), "w") as file:
            file.write(extensions + "\n")
        openssl("x509", "-req", "-in", path(f"{name}.csr"), "-CA", path("ca.pem"), "-CAkey",
                path("ca.key"), "-CAcreateserial", "-days", "30", "-extfile",
                path(f"{name}.ext"), "-out", path(f"{name}.pem"))
    openssl("x509", "-in", path("person.pem"), "-outform", "DER", "-out", path("person.der"))
    openssl("pkey", "-in", path("person.key"), "-outform", "DER", "-out", path("person.key.der"))


# A box that changes its colour all the time, and a frame that wants to know who comes.
FRAME = """<!DOCTYPE html><title>Who are you?</title>
<div id="box" style="height: 200px"></div><iframe src="{address}" width="400"></iframe>
<script>
let shade = 0;
setInterval(() => {{
  shade = (shade + 16) % 256;
  document.getElementById("box").style.background = `rgb(${{shade}}, 127, 127)`;
}}, 50);
onmessage = message => document.title = message.data;
</script>"""
WELCOME = """<!DOCTYPE html><h1>Welcome {name}</h1>
<script>parent.postMessage("Welcome {name}", "*")</script>"""


class Page(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        text = self.server.text(self.connection).encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    """Serves one page on a port of this machine: what `text` gives for a connection."""

    def __init__(self, text, context=None):
        super().__init__(("localhost", 0), Page)
        self.text = text
        if context:
            # The handshake waits for a person: it is made at the first read, on the connection's
            # own thread.
            self.socket = context.wrap_socket(self.socket, server_side=True,
                                              do_handshake_on_connect=False)
        self._thread = threading.Thread(target=self.serve_forever, daemon=True)
        self._thread.start()

    def handle_error(self, *_):
        pass  # a browser tries without a certificate first

    def close(self):
        self.shutdown()
        self.server_close()
        self._thread.join()


def welcome(connection):
    subject = dict(pair for part in connection.getpeercert()["subject"] for pair in part)
    return WELCOME.format(name=subject["commonName"])


@contextlib.contextmanager
def site(folder):
    """The address of a page with a frame for those with a certificate of the authority."""
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(os.path.join(folder, "server.pem"), os.path.join(folder, "server.key"))
    context.load_verify_locations(os.path.join(folder, "ca.pem"))
    context.verify_mode = ssl.CERT_REQUIRED
    with contextlib.closing(Server(welcome, context)) as secured:
        framed = FRAME.format(address=f"https://localhost:{secured.server_port}/")
        with contextlib.closing(Server(lambda _: framed)) as plain:
            yield f"http://localhost:{plain.server_port}/"


def make_profile(folder, authority, module):
    """A profile of the browser that trusts the authority and has the module."""
    profile = os.path.join(folder, "profile")
    os.mkdir(profile)
    with open(os.path.join(profile, "user.js"), "w") as file:
        for name, value in PREFERENCES.items():
            text = f'"{value}"' if isinstance(value, str) else str(value).lower()
            file.write(f'user_pref("{name}", {text});\n')
    place = f"sql:{profile}"
    run("certutil", "-N", "-d", place, "--empty-password")
    run("certutil", "-A", "-d", place, "-n", "authority", "-t", "C,,", "-i", authority)
    run("modutil", "-dbdir", place, "-add", "Dialogs", "-libfile", module, "-force")
    return profile
