"""Chromium, driven by WebDriver."""

import os

from selenium import webdriver
from selenium.common.exceptions import NoSuchWindowException, TimeoutException, WebDriverException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from stand_in_bridge import CHROMIUM_ID

PAGE_LOAD_SECONDS = 20


class Chromium:
    """One start of Chromium with the extension. Tabs are named by their handles."""

    name = "chromium"
    keys = Keys

    def __init__(self, folder, extension, bridge=None):
        profile = folder / "profile"
        profile.mkdir()
        if bridge is not None:
            bridge.install(profile / "NativeMessagingHosts")
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        options.page_load_strategy = "none"
        for argument in ("--headless=new", f"--user-data-dir={profile}", "--password-store=basic",
                         "--disable-dev-shm-usage", "--no-first-run", "--window-size=1200,800",
                         "--disable-background-networking", "--disable-component-update",
                         "--host-resolver-rules=MAP * 127.0.0.1",
                         # The pages of the tests come without TLS.
                         "--disable-features=HttpsUpgrades,HttpsFirstBalancedModeAutoEnable,"
                         "HttpsFirstBalancedMode,DisableLoadExtensionCommandLineSwitch",
                         f"--load-extension={extension / 'chromium'}"):
            options.add_argument(argument)
        if os.getuid() == 0:
            options.add_argument("--no-sandbox")
        environment = {name: value for name, value in os.environ.items()
                       if name != "DBUS_SESSION_BUS_ADDRESS"} | {"HOME": str(folder)}
        service = Service("/usr/bin/chromedriver", log_path=str(folder / "chromedriver.log"),
                          env=environment)
        self._driver = webdriver.Chrome(service=service, options=options)
        self._driver.set_page_load_timeout(PAGE_LOAD_SECONDS)
        self._driver.set_script_timeout(PAGE_LOAD_SECONDS)
        self.own_address = f"chrome-extension://{CHROMIUM_ID}/"

    @property
    def tabs(self):
        return self._driver.window_handles

    @property
    def tab(self):
        return self._driver.current_window_handle

    def switch(self, tab):
        """Goes on with a tab, without showing it."""
        self._driver.switch_to.window(tab)

    def open(self, address):
        """Begins to go there. Where the tab arrives is another matter."""
        try:
            self._driver.get(address)
        except (TimeoutException, WebDriverException):
            pass

    def open_own(self, page):
        """Shows a page of the extension in the current tab."""
        self.open(self.own_address + page)

    def new_tab(self, address="about:blank"):
        self._driver.switch_to.new_window("tab")
        self.show(self.tab)
        self.open(address)
        return self.tab

    def show(self, tab):
        """Makes a tab the visible one of its window, as a click on it does."""
        self.switch(tab)
        self._driver.execute_cdp_cmd("Page.bringToFront", {})

    def close_tab(self, tab):
        self.switch(tab)
        self._driver.close()
        self.switch(self.tabs[-1])

    @property
    def address(self):
        try:
            return self._driver.current_url
        except (NoSuchWindowException, WebDriverException):
            return ""

    @property
    def title(self):
        return self._driver.title

    def run(self, script, *arguments):
        """Runs a script in the current page and gives what it returns."""
        return self._driver.execute_script(script, *arguments)

    def run_asynchronously(self, script, *arguments):
        """The same for an expression that is a promise."""
        return self._driver.execute_async_script(
            f"const done = arguments[arguments.length - 1]; ({script}).then(done)", *arguments)

    def click(self, selector):
        self._driver.find_element(By.CSS_SELECTOR, selector).click()

    def type(self, selector, text):
        self._driver.find_element(By.CSS_SELECTOR, selector).send_keys(text)

    def press(self, *keys):
        """Presses keys one after the other, wherever the focus is."""
        actions = webdriver.ActionChains(self._driver)
        for key in keys:
            actions.send_keys(key)
        actions.perform()

    def click_at(self, x, y):
        """Clicks at a point of the view, as a hand does."""
        for kind in ("mousePressed", "mouseReleased"):
            self._driver.execute_cdp_cmd("Input.dispatchMouseEvent", {
                "type": kind, "x": x, "y": y, "button": "left", "clickCount": 1})

    def end_workers(self):
        """Ends the background of the extension, one of whose pages is shown, as the browser may."""
        self._driver.execute_cdp_cmd("ServiceWorker.enable", {})
        self._driver.execute_cdp_cmd("ServiceWorker.stopAllWorkers", {})

    def accessibility_tree(self):
        """All that assistive tools are told about the current page, as (role, name, node)."""
        self._driver.execute_cdp_cmd("Accessibility.enable", {})
        nodes = self._driver.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        return [(node["role"]["value"], node.get("name", {}).get("value", ""), node)
                for node in nodes if not node.get("ignored")]

    def emulate(self, **features):
        """Media features, such as prefers_color_scheme="dark"."""
        self._driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": name.replace("_", "-"), "value": value} for name, value in features.items()]})

    def picture(self, path, width=1000, height=None):
        """A picture of the current page, in its whole height unless told."""
        size = self._driver.execute_cdp_cmd("Page.getLayoutMetrics", {})["cssContentSize"]
        self._driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": int(height or size["height"]), "deviceScaleFactor": 1,
            "mobile": False})
        if height is None:
            size = self._driver.execute_cdp_cmd("Page.getLayoutMetrics", {})["cssContentSize"]
            self._driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
                "width": width, "height": int(size["height"]), "deviceScaleFactor": 1,
                "mobile": False})
        self._driver.save_screenshot(str(path))
        self._driver.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})

    def before_each_page(self, script):
        """Runs a script in the current tab's pages before their own."""
        self._driver.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": script})

    def close(self):
        self._driver.quit()
