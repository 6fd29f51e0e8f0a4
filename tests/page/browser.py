"""A Chromium for tests, and what is asked of a page in it."""

import sys

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

from plant import until

DESKTOP = (1280, 860)
PHONE = (390, 780)


class Browser:
    def __init__(self, address):
        options = webdriver.ChromeOptions()
        for argument in ("--no-sandbox", "--headless=new", "--hide-scrollbars"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.address = address
        self.size(DESKTOP)

    def command(self, name, **parameters):
        return self.driver.execute_cdp_cmd(name, parameters)

    def size(self, size, scale=1):
        width, height = size
        self.command(
            "Emulation.setDeviceMetricsOverride",
            width=width,
            height=height,
            deviceScaleFactor=scale,
            mobile=size == PHONE,
        )

    def dark(self, on):
        value = "dark" if on else "light"
        feature = {"name": "prefers-color-scheme", "value": value}
        self.command("Emulation.setEmulatedMedia", features=[feature])

    def open(self, where=""):
        self.driver.get(self.address + where)

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def text(self, selector):
        """What stands in the first element that is shown; empty if there is none."""
        return self.run(
            "const found = document.querySelector(arguments[0]);"
            "return found && found.checkVisibility() ? found.innerText : ''",
            selector,
        )

    def value(self, tag):
        """The value and the quality of a tag in the table."""
        return self.run(
            "const row = [...document.querySelectorAll('#tags tr')]"
            ".find((each) => each.querySelector('button').textContent === arguments[0]);"
            "return row ? ['value', 'quality'].map((name) => "
            "row.querySelector('.' + name).textContent) : ['', '']",
            tag,
        )

    def reads(self, selector, *wanted, most=20.0):
        """Waits until all these words stand there."""
        what = f"{selector} reads {' and '.join(wanted)}"
        try:
            until(what, lambda: all(each in self.text(selector) for each in wanted), most)
        except Exception:
            print(f"{selector} reads: {self.text(selector)}", file=sys.stderr)
            raise

    def press(self, *keys):
        actions = webdriver.ActionChains(self.driver)
        for key in keys:
            actions.send_keys(key)
        actions.perform()

    def focused(self):
        return self.run("return document.activeElement.textContent || document.activeElement.id")

    def picture(self, file):
        self.driver.save_screenshot(file)

    def complaints(self):
        """What the browser found wrong, such as what the page's policy forbids."""
        return [line["message"] for line in self.driver.get_log("browser")]

    def close(self):
        self.driver.quit()
