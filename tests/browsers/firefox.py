"""Firefox ESR, driven over the raw wire of its remote control."""

import base64
import os
import pathlib
import signal
import subprocess

from marionette import Marionette, RemoteError
from stand_in_bridge import FIREFOX_ID
from waiting import eventually

START_SECONDS = 60
PORT = 2828
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"

PREFERENCES = {
    "network.dns.forceResolve": "127.0.0.1",
    "dom.security.https_first": False,
    "dom.security.https_first_schemeless": False,
    "network.captive-portal-service.enabled": False,
    "network.connectivity-service.enabled": False,
    "browser.shell.checkDefaultBrowser": False,
    "browser.startup.homepage_override.mstone": "ignore",
    "browser.startup.page": 0,
    "browser.aboutwelcome.enabled": False,
    "datareporting.policy.dataSubmissionEnabled": False,
    "toolkit.telemetry.reportingpolicy.firstRun": False,
    "app.update.disabledForTesting": True,
    "extensions.update.enabled": False,
    "extensions.getAddons.cache.enabled": False,
    "services.settings.server": "data:,",
    "browser.tabs.closeWindowWithLastTab": False,
}


class FirefoxKeys:
    TAB, ENTER, ESCAPE, SPACE, SHIFT = "\ue004", "\ue007", "\ue00c", " ", "\ue008"


class Firefox:
    """One start of Firefox with the extension. Tabs are named by their handles."""

    name = "firefox"
    keys = FirefoxKeys

    def __init__(self, folder, extension, bridge=None):
        profile = folder / "profile"
        profile.mkdir()
        if bridge is not None:
            bridge.install(folder / ".mozilla" / "native-messaging-hosts")
        lines = [f'user_pref("{name}", {value!r});\n'.replace("'", '"')
                 .replace("True", "true").replace("False", "false")
                 for name, value in PREFERENCES.items()]
        (profile / "user.js").write_text("".join(lines))
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY")}
        environment |= {"HOME": str(folder), "MOZ_HEADLESS": "1", "MOZ_DISABLE_AUTO_SAFE_MODE": "1",
                        "MOZ_HEADLESS_WIDTH": "1200", "MOZ_HEADLESS_HEIGHT": "800"}
        self._log = open(folder / "firefox.log", "wb")
        self._process = subprocess.Popen(
            ["firefox-esr", "--headless", "--marionette", "--remote-allow-system-access",
             "--no-remote", "--profile", str(profile)],
            stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log, env=environment,
            start_new_session=True)
        self._wire = None
        try:
            self._begin(extension)
        except BaseException:
            self.close()
            raise

    def _begin(self, extension):
        self._wire = Marionette(PORT, START_SECONDS)
        self._wire.call("WebDriver:NewSession", capabilities={"alwaysMatch": {
            "pageLoadStrategy": "none", "timeouts": {"pageLoad": 20000, "script": 20000}}})
        self._wire.call("Addon:Install", path=str(extension / "tarne-companion.xpi"), temporary=True)
        host = self._privileged("return WebExtensionPolicy.getByID(arguments[0]).mozExtensionHostname",
                                FIREFOX_ID)
        self.own_address = f"moz-extension://{host}/"
        # It comes in front, where `open_own` would replace it.
        eventually(lambda: len(self.tabs) > 1, "the welcome page comes up", START_SECONDS)

    @property
    def tabs(self):
        return self._wire.call("WebDriver:GetWindowHandles")

    @property
    def tab(self):
        return self._wire.call("WebDriver:GetWindowHandle")

    def switch(self, tab):
        """Goes on with a tab, without showing it."""
        self._wire.call("WebDriver:SwitchToWindow", handle=tab, focus=False)

    def open(self, address):
        """Begins to go there. Where the tab arrives is another matter."""
        try:
            self._wire.call("WebDriver:Navigate", url=address)
        except RemoteError:
            pass

    def open_own(self, page):
        """Shows a page of the extension in the current tab."""
        # From outside of the page only the tab that is shown can be reached.
        self.show(self.tab)
        self._privileged(
            "gBrowser.selectedBrowser.fixupAndLoadURIString(arguments[0], {triggeringPrincipal:"
            "Services.scriptSecurityManager.getSystemPrincipal()})", self.own_address + page)

    def new_tab(self, address="about:blank"):
        self.switch(self._wire.call("WebDriver:NewWindow", type="tab", focus=True)["handle"])
        self.show(self.tab)
        if address != "about:blank":
            self.open(address)
        return self.tab

    def show(self, tab):
        """Makes a tab the visible one of its window, as a click on it does."""
        self._wire.call("WebDriver:SwitchToWindow", handle=tab, focus=True)

    def close_tab(self, tab):
        self.switch(tab)
        self._wire.call("WebDriver:CloseWindow")
        self.show(self.tabs[-1])

    @property
    def address(self):
        try:
            return self._wire.call("WebDriver:GetCurrentURL")
        except RemoteError:
            return ""

    @property
    def title(self):
        return self._wire.call("WebDriver:GetTitle")

    def run(self, script, *arguments):
        """Runs a script in the current page and gives what it returns."""
        return self._wire.call("WebDriver:ExecuteScript", script=script, args=list(arguments))

    def run_asynchronously(self, script, *arguments):
        """The same for an expression that is a promise."""
        return self._wire.call(
            "WebDriver:ExecuteAsyncScript", args=list(arguments),
            script=f"const done = arguments[arguments.length - 1]; ({script}).then(done)")

    def click(self, selector):
        self._wire.call("WebDriver:ElementClick", id=self._find(selector))

    def type(self, selector, text):
        self._wire.call("WebDriver:ElementSendKeys", id=self._find(selector), text=text)

    def press(self, *keys):
        """Presses keys one after the other, wherever the focus is."""
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self._wire.call("WebDriver:PerformActions",
                        actions=[{"type": "key", "id": "keyboard", "actions": actions}])

    def click_at(self, x, y):
        """Clicks at a point of the view, as a hand does."""
        self._wire.call("WebDriver:PerformActions", actions=[{
            "type": "pointer", "id": "mouse", "parameters": {"pointerType": "mouse"}, "actions": [
                {"type": "pointerMove", "x": x, "y": y, "duration": 0},
                {"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}]}])

    def picture(self, path, **_):
        data = self._wire.call("WebDriver:TakeScreenshot", full=True)
        pathlib.Path(path).write_bytes(base64.b64decode(data))

    def close(self):
        if self._wire is not None:
            try:
                self._wire.call("Marionette:Quit", flags=["eForceQuit"])
            except (OSError, RemoteError, ValueError):
                pass  # It hangs up as it ends.
            self._wire.close()
        try:
            self._process.wait(timeout=20)
        except subprocess.TimeoutExpired:
            os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait()
        self._log.close()

    def _find(self, selector):
        return self._wire.call("WebDriver:FindElement", using="css selector", value=selector)[ELEMENT]

    def _privileged(self, script, *arguments):
        self._wire.call("Marionette:SetContext", value="chrome")
        try:
            return self._wire.call("WebDriver:ExecuteScript", script=script, args=list(arguments))
        finally:
            self._wire.call("Marionette:SetContext", value="content")
