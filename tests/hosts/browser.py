"""A browser with the module over PKCS#11, and a server that asks it for a certificate."""

import contextlib
import http.server
import os
import ssl
import subprocess
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


class Page(http.server.BaseHTTPRequestHandler):
    """Says who has come, by the certificate."""

    def do_GET(self):
        subject = dict(pair for part in self.connection.getpeercert()["subject"] for pair in part)
        text = (f"<!DOCTYPE html><title>Welcome {subject['commonName']}</title>"
                f"<h1>Welcome {subject['commonName']}</h1>").encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def log_message(self, *_):
        pass


@contextlib.contextmanager
def server(folder):
    """Serves the page to who has a certificate of the authority, on a port of this machine's."""
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(os.path.join(folder, "server.pem"), os.path.join(folder, "server.key"))
    context.load_verify_locations(os.path.join(folder, "ca.pem"))
    context.verify_mode = ssl.CERT_REQUIRED
    serving = http.server.ThreadingHTTPServer(("localhost", 0), Page)
    # The handshake waits for a person: it is made on the connection's own thread, at the first
    # read, not while connections are accepted.
    serving.socket = context.wrap_socket(serving.socket, server_side=True,
                                         do_handshake_on_connect=False)
    thread = threading.Thread(target=serving.serve_forever, daemon=True)
    thread.start()
    try:
        yield f"https://localhost:{serving.server_port}/"
    finally:
        serving.shutdown()
        serving.server_close()
        thread.join()


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
