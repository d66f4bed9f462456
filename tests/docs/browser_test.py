"""Uses the built site as a reader does, from files, in a browser without a window.

browser_test.py SITE: the folder that scripts/docs builds. The browser is told over a pipe what to
do, each message a JSON object that a zero byte ends (Chrome DevTools Protocol).
"""

import json
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PHONE, DESK = (400, 800), (1280, 900)


class Browser:
    def __init__(self, folder):
        to_browser, self.commands = os.pipe()
        self.answers, from_browser = os.pipe()

        def connect():  # the browser reads from 3 and writes to 4
            read, write = os.dup(to_browser), os.dup(from_browser)
            os.dup2(read, 3)
            os.dup2(write, 4)

        words = ["chromium", "--headless", "--no-sandbox", "--disable-gpu",
                 "--remote-debugging-pipe", f"--user-data-dir={folder}", "about:blank"]
        self.process = subprocess.Popen(words, preexec_fn=connect, close_fds=False,
                                        stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.number = 0
        self.rest = b""
        self.session = None
        self.requests = []  # the addresses of what pages ask for
        page = next(one for one in self.call("Target.getTargets")["targetInfos"]
                    if one["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=page["targetId"],
                                 flatten=True)["sessionId"]
        for domain in ("Page", "Network", "Runtime"):
            self.call(f"{domain}.enable")

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        while True:
            while b"\0" not in self.rest:
                part = os.read(self.answers, 1 << 16)
                if not part:
                    raise RuntimeError("the browser ended")
                self.rest += part
            text, _, self.rest = self.rest.partition(b"\0")
            answer = json.loads(text)
            if answer.get("method") == "Network.requestWillBeSent":
                self.requests.append(answer["params"]["request"]["url"])
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]

    def open(self, path, size=DESK, dark=False):
        self.call("Emulation.setDeviceMetricsOverride", width=size[0], height=size[1],
                  deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        self.call("Page.navigate", url=path.as_uri())
        self.until(f"document.readyState === 'complete' && location.href === "
                   f"{json.dumps(path.as_uri())}")

    def value(self, expression):
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{expression}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def until(self, expression, seconds=20):
        """Waits until an expression is true; gives whether it became so."""
        end = time.monotonic() + seconds
        while not self.value(expression):
            if time.monotonic() > end:
                return False
            time.sleep(0.05)
        return True

    def type(self, text):
        self.call("Input.insertText", text=text)

    def press(self, key):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, code=key,
                      text={"Enter": "\r", "/": "/"}.get(key, "") if kind == "keyDown" else "",
                      windowsVirtualKeyCode={"Enter": 13, "ArrowDown": 40, "Escape": 27}.get(key, 0))

    def close(self):
        self.call("Browser.close")
        self.process.wait(timeout=30)


def names(browser):
    return browser.value("[...document.querySelectorAll('.find-list .find-name')]"
                         ".map(one => one.textContent)")


def complaints(browser, site):
    found = []

    def expect(condition, text):
        if not condition:
            found.append(text)

    every = site / "docs/instructions/index.html"
    fit = site / "docs/instructions/460084.html"

    browser.open(every)
    rows = browser.value("document.querySelectorAll('table.all tr').length")
    expect(rows == 263, f"{rows} instructions are listed")
    browser.type("circle")
    browser.until("document.querySelectorAll('.find-list a').length > 0")
    expect({"Circle", "PtsToBestCircle", "PtsToBestCircleInf"} <= set(names(browser)),
           f"\"circle\" finds {names(browser)}")
    expect(browser.value("document.querySelector('table.all').offsetHeight === 0"),
           "all are shown while some are found")
    browser.type(" OUTLIERS")
    browser.until("document.querySelectorAll('.find-list a').length < 5")
    expect(names(browser)[:1] == ["PtsToBestCircle"], f"\"circle OUTLIERS\" finds {names(browser)}")
    browser.press("ArrowDown")
    browser.press("Enter")
    expect(browser.until(f"location.href === {json.dumps(fit.as_uri())}"),
           "the arrow and enter keys do not open what was found")
    expect(browser.until("document.querySelector('.picture img')?.naturalWidth > 0"),
           "the picture does not show")

    for identifier, help_number in (("_Nuv_Geometric_Pt2BestCircle_", 460084),
                                    ("_Nuv_Array_CPArrSort_", 460242)):
        browser.call("Page.navigate", url=(every.parent / f"{identifier}.html").as_uri())
        expect(browser.until(f"location.pathname.endsWith('{help_number}.html')"),
               f"{identifier}.html does not lead to its page")

    browser.open(fit)
    browser.press("/")
    expect(browser.value("document.activeElement.type") == "search", "\"/\" goes to no search")
    browser.type("460113")
    browser.until("document.querySelectorAll('.find-list a').length > 0")
    expect(names(browser) == ["Divide"], f"the number 460113 finds {names(browser)}")

    # Dark by the system's wish, and by the reader's: that one holds on other pages.
    brightness = ("getComputedStyle(document.body).backgroundColor.match(/\\d+/g)"
                  ".slice(0, 3).reduce((sum, one) => sum + Number(one), 0)")
    for wish in ("dark", "light"):
        browser.value("localStorage.clear()")  # what an earlier visit chose
        browser.open(fit, dark=wish == "dark")
        expect(browser.until(f"({brightness} < 300) === {json.dumps(wish == 'dark')}", 5),
               f"the page is not {wish} where that is wished")
    browser.open(every)
    expect(browser.value(brightness) > 600, "the page is dark where light is wished")
    browser.value("document.querySelector('label[for=__palette_2]').click()")
    browser.open(fit)
    expect(browser.value(brightness) < 300, "dark mode does not hold on another page")

    # Nothing is wider than the window, but what scrolls by itself.
    for path in [every, fit, site / "index.html", *sorted(every.parent.glob("4600*.html"))[:20]]:
        browser.open(path, PHONE)
        width = browser.value("document.documentElement.scrollWidth")
        expect(width <= PHONE[0], f"{path.name} is {width} wide on a phone")

    outside = sorted({url for url in browser.requests if not url.startswith(("file:", "data:"))})
    expect(not outside, f"asked for from outside: {outside}")
    expect(len(browser.requests) > 50, "the requests were not seen")
    return found


def main(site):
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = Browser(folder)
        try:
            found = complaints(browser, Path(site).resolve())
        finally:
            browser.close()
    print(*found, f"{len(browser.requests)} files shown, {len(found)} complaints", sep="\n")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
