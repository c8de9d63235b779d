"""page_test.py SCENARIOS FOLDER PROGRAM...: a report's page in a browser: it shows what the command itself tells, sorts,
searches and filters, works by keyboard, names everything for screen readers, needs no network, fits a phone, and what a
scenario holds stays text. In the end a page that is broken in each of these ways has to be found out."""
import json
import pathlib
import re
import subprocess
import sys

from selenium import webdriver
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select

HERE = pathlib.Path(__file__).parent
SCENARIOS, FOLDER, SOFTCARD = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
# The slash ends a folder's name, and the element.
HOSTILE = "<!--</script><script>owned=1<", "script><img src=x onerror=owned=1>.scn"
SECONDS = 30  # nothing takes as long


def softcard(*arguments, status=0):
    done = subprocess.run([*SOFTCARD, *arguments], stdout=subprocess.PIPE, text=True, timeout=4 * SECONDS, check=False)
    assert done.returncode == status, (arguments, done.returncode)
    return done.stdout


def lines(*arguments, status=0):
    return [json.loads(line) for line in softcard(*arguments, status=status).splitlines()]


def open_browser():
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    service = webdriver.chrome.service.Service("/usr/bin/chromedriver")
    browser = webdriver.Chrome(service=service, options=options)
    browser.set_page_load_timeout(SECONDS)
    browser.set_script_timeout(SECONDS)
    browser.command_executor.set_timeout(2 * SECONDS)
    return browser


class Page:
    """A page that has been opened, and what can be done with it."""

    def __init__(self, browser, path, width=1280, dark=False, link=""):
        self.browser = browser
        self.asked = []  # of the network
        self.command("Emulation.setDeviceMetricsOverride",
                     width=width, height=900, deviceScaleFactor=1, mobile=width < 600)
        theme = {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}
        self.command("Emulation.setEmulatedMedia", features=[theme])
        browser.get("about:blank")
        browser.get_log("browser"), browser.get_log("performance")
        browser.get(path.resolve().as_uri() + link)

    def command(self, name, **arguments):
        return self.browser.execute_cdp_cmd(name, arguments)

    def run(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def find(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        return self.run("return [...document.querySelectorAll(arguments[0])].map((one) => one.innerText)", selector)

    def table(self, name):
        """The texts of a table's cells, row by row; nothing when it is not shown."""
        return self.run("""const section = document.getElementById(`table-${arguments[0]}`);
            if (section === null || section.hidden) return [];
            return [...section.querySelectorAll("tbody tr")].map(
                (row) => [...row.cells].map((cell) => cell.innerText))""", name)

    def search(self, text):
        field = self.find("#search")
        field.send_keys(Keys.CONTROL, "a")
        field.send_keys(text or Keys.DELETE)

    def choose(self, destination):
        Select(self.find("#destination")).select_by_value(str(destination))

    def show_all(self):
        self.run("""for (const button of document.querySelectorAll(".more > button"))
            if (button.innerText.startsWith("Show all")) button.click()""")

    def shown(self):
        return self.find("#shown").text


def is_quiet(page):
    """No errors, no network, nothing of the scenario was run."""
    assert page.browser.get_log("browser") == [], page.browser.get_log("browser")
    messages = [json.loads(entry["message"])["message"] for entry in page.browser.get_log("performance")]
    page.asked += [message["params"]["request"]["url"] for message in messages
                   if message["method"] == "Network.requestWillBeSent"]
    foreign = [url for url in page.asked if not re.match("(file|data|about):", url)]
    assert page.asked and not foreign, foreign
    assert page.run("return typeof owned") == "undefined", "a scenario's text was run"
    assert page.run("return document.querySelectorAll('img, b, iframe, script').length") == 2, "text became markup"


def shows_what_the_card_holds(page, state):
    page.show_all()
    for name, rows in state["tables"].items():
        found = page.table(name)
        assert len(found) == len(rows), (name, len(found), len(rows))
        for cells, row in zip(found, rows):
            assert cells[0] == str(next(iter(row.values()))), (name, cells, row)
            for cell, value in zip(cells, row.values()):
                if isinstance(value, str):
                    assert cell == value, (name, cell, value)
                if isinstance(value, list):  # labels
                    assert re.findall(r"^\d+", cell, re.M) == [str(label["label"]) for label in value], (cell, value)
    assert page.table("stations")[0] == ["100", "0xfff", "00:00:5e:00:01:01", "0x0"], page.table("stations")
    assert page.table("egresses")[0][6:8] == ["false", "false"], page.table("egresses")


def shows_findings_and_sweep(page, findings, swept, end):
    told = page.texts(".finding")
    assert len(told) == len(findings) > 0, (told, findings)
    for text, finding in zip(told, findings):
        for value in finding.values():
            assert value in text, (value, text)
    for name in ("refusals", "leave", "fail_again", "cannot_be_destroyed", "crash"):
        assert re.search(rf"\b{end[name]} {name.replace('_', ' ')}", page.find("#sweep-summary").text), (name, end)
    page.run("document.querySelectorAll('#sweep details').forEach((one) => { one.open = true; })")
    page.run("return new Promise((done) => setTimeout(done, 50))")
    heads = [re.sub(r"\s+", " ", head) for head in page.texts("#sweep summary")]
    first = {request["line"]: request for request in reversed(swept)}  # of the rounds of a loop the first one
    for line, request in first.items():
        place = next((place for place, head in enumerate(heads) if f":{line} {request['text']}" in head), None)
        assert place is not None, (request["text"], heads)
        rows = page.run("""const request = document.querySelectorAll("#sweep details")[arguments[0]];
            return [...request.querySelectorAll("tbody tr")].map(
                (row) => [...row.cells].map((cell) => cell.innerText))""", place)
        calls = [refusal["refused"][0] for refusal in request["refusals"]]
        assert [row[0].split(" = ")[0] for row in rows] == [f"{call['number']}. {call['call']}" for call in calls], line
        for row, refusal in zip(rows, request["refusals"]):
            results = [str(refusal.get(name, "\u2013")) for name in ("result", "again", "destroy")]
            assert row[1:4] == results, (row, refusal)
            assert ("leaves something" in row[4]) == bool(refusal["findings"]), (row, refusal)


def tells_the_stories(page, chains, packets):
    page.show_all()
    for destination, chain in chains.items():
        page.run("document.getElementById(arguments[0]).open = true", f"destination-{destination}")
    page.run("return new Promise((done) => setTimeout(done, 50))")
    for destination, chain in chains.items():
        story = page.texts(f"#destination-{destination} li")
        layers = [line for line in packets[destination] if line not in chain]
        assert story[:len(chain)] == chain, (destination, story, chain)
        assert story[len(chain):len(chain) + len(layers)] == layers, (destination, story, layers)


def sorts_by_keyboard(page):
    """By Tab to a column's name and Enter; once more the other way round, and the focus stays."""
    page.find("#search").click()
    keys = ActionChains(page.browser)
    for _ in range(200):
        keys.send_keys(Keys.TAB).perform()
        if page.run("""const at = document.activeElement;
            return at.innerText === "mac" && at.closest("section").id === "table-egresses" """):
            break
    else:
        raise AssertionError("no Tab leads to a column of the egress objects")
    for direction, backwards in (("ascending", False), ("descending", True)):
        keys.send_keys(Keys.ENTER).perform()
        macs = [row[2] for row in page.table("egresses")]
        assert macs == sorted(macs, reverse=backwards) and len(set(macs)) > 20, (direction, macs)
        header = page.find("#table-egresses th:nth-child(3)")
        assert header.get_attribute("aria-sort") == direction, header.get_attribute("aria-sort")
        assert page.run("return document.activeElement.innerText") == "mac"
        assert page.shown() == f"egresses sorted by mac, {direction}", page.shown()
        outline = page.run("return getComputedStyle(document.activeElement).outlineStyle")
        assert outline != "none", "no focus is seen"
    page.find("#table-egresses th:first-child button").click()
    numbers = [int(row[0]) for row in page.table("egresses")]
    assert numbers == sorted(numbers), numbers


def searches(page, state):
    rows = [json.dumps(row) for table in state["tables"].values() for row in table]
    text = "02:00:00:00:01:0"
    page.search(text)
    expected = sum(text in row for row in rows)
    assert 0 < expected < len(rows)
    assert page.shown().startswith(f"{expected} of {len(rows)} rows, "), (page.shown(), expected)
    assert all(text in row[2] for row in page.table("egresses")) and page.table("vrfs") == []
    page.search("VLAN=101 tunnel=none")  # all words of it, in large letters or small
    assert [row[0] for row in page.table("intfs")] == ["2"], page.table("intfs")
    page.search("nothing has this")
    assert page.shown().startswith(f"0 of {len(rows)} rows, 0 of "), page.shown()
    page.search("")
    assert page.shown().startswith(f"{len(rows)} of {len(rows)} rows, "), page.shown()


def filters(page, state, chains):
    def keys(table):
        return [row[0] for row in page.table(table)]
    for destination in (101, 201, 202):
        page.choose(destination)
        assert keys("destinations") == [str(destination)]
        for table, row in {"egresses": "egress", "intfs": "intf", "initiators": "initiator", "members": "members"}.items():
            told = re.findall(rf"^{row} (\w+):", "\n".join(chains[destination]), re.M)
            assert set(told) <= set(keys(table)), (destination, table, told, keys(table))
            assert len(keys(table)) <= len(set(told)) + 1, (destination, table, told, keys(table))
        assert keys("stations") == [], "a host needs no station of its own"
    assert keys("labels") == ["77"] and keys("routes") == []
    page.choose(201)
    assert keys("routes") == ["198.51.100.0/24"] and keys("members") == ["lag1"]
    assert keys("counters") == ["destination 201"]
    page.choose(203)
    assert keys("attachments") == ["eth8"]
    page.choose(11)
    assert keys("stations") == keys("protocol") == keys("associations") == ["101"] and keys("vrfs") == ["1"]
    page.find("#clear").click()
    assert len(keys("destinations")) == len(state["tables"]["destinations"])


def is_named(page):
    """Everything that can be used or jumped to has a name in the browser's accessibility tree."""
    def value(node, name):
        return (node.get(name) or {}).get("value", "")
    nodes = [node for node in page.command("Accessibility.getFullAXTree")["nodes"] if not node["ignored"]]
    names = [(value(node, "role"), value(node, "name")) for node in nodes]
    roles = ("button", "link", "textbox", "searchbox", "combobox", "region", "table", "navigation", "search", "heading",
             "columnheader", "rowheader", "image", "img", "DisclosureTriangle")
    nameless = [(role, name) for role, name in names if role in roles and not name.strip()]
    assert not nameless, nameless
    for wanted in (("searchbox", "Search"), ("combobox", "Destination"), ("navigation", "Sections"), ("button", "mac"),
                   ("region", "Findings"), ("link", "Skip to the content"), ("columnheader", "mtu")):
        assert wanted in names, (wanted, sorted(set(names)))
    tables = page.run("return document.querySelectorAll('#tables section:not([hidden]) table').length")
    captions = [name for role, name in names if role == "table" and name.startswith("Table ")]
    assert len(captions) == tables > 8, captions
    pictures = [name for role, name in names if role in ("img", "image")]
    assert any(name.startswith("Picture of the card") for name in pictures), pictures
    assert page.run("return [...document.querySelectorAll('th')].every((cell) => cell.scope)"), "a th without scope"
    assert page.run("return document.getElementById('shown').getAttribute('aria-live')") == "polite"


def fits(page, width):
    assert page.run("return document.documentElement.scrollWidth") <= width, "the page scrolls sideways"
    assert page.run("return document.querySelector('#table-egresses .scroll').scrollWidth") > 300


CHECKS = {
    "is quiet": lambda page, truth: is_quiet(page),
    "rows": lambda page, truth: shows_what_the_card_holds(page, truth["state"]),
    "findings": lambda page, truth: shows_findings_and_sweep(page, truth["findings"], truth["swept"], truth["end"]),
    "stories": lambda page, truth: tells_the_stories(page, truth["chains"], truth["packets"]),
    "search": lambda page, truth: searches(page, truth["state"]),
    "filter": lambda page, truth: filters(page, truth["state"], truth["chains"]),
    "sort": lambda page, truth: sorts_by_keyboard(page),
    "names": lambda page, truth: is_named(page),
    "is still quiet": lambda page, truth: is_quiet(page),
}
BROKEN = {  # what is done to a page that was good, and which check has to find it
    "an error": ("function begin() {", "function begin() { missing.begin();", "is quiet"),
    "a request": ('href="data:,"', 'href="http://192.0.2.1/icon.png"', "is quiet"),
    "a text that is markup": ("</main>", "<b>owned</b></main>", "is quiet"),
    "a row too few": ("shown.map((item) => drawRow", "shown.slice(1).map((item) => drawRow", "rows"),
    "a harmless leftover": ('harm.push("leaves something")', '""', "findings"),
    "a story cut short": ("story(chain),", "story(chain.slice(1)),", "stories"),
    "a search that finds all": ("item.text.includes(word)", "true", "search"),
    "a filter that keeps all": ("item.used_by.includes(Number(filter.destination))", "true", "filter"),
    "a sort that sorts nothing": ("sign * compare(", "0 * compare(", "sort"),
    "a button without a name": ("sortBy(list, place) }, column.name", 'sortBy(list, place) }, ""', "names"),
}


def check_links(browser, path):
    page = Page(browser, path, link="#destination-203")
    assert page.find("#destination-203").get_attribute("open") is not None
    page = Page(browser, path, link="#table-egresses")
    top = page.run("return document.getElementById('table-egresses').getBoundingClientRect().top")
    assert 0 <= top < 200, top


def look(browser, path):
    """Leaves pictures for whoever wants to see the page, and looks at what a program can."""
    backgrounds = set()
    for width in (1280, 390):
        for dark in (False, True):
            page = Page(browser, path, width, dark)
            fits(page, width)
            backgrounds.add(page.run("return getComputedStyle(document.body).backgroundColor"))
            browser.save_screenshot(str(FOLDER / f"{width}-{'dark' if dark else 'light'}.png"))
    assert len(backgrounds) == 2, backgrounds


def truth_of(scenario):
    """What the command itself tells of a scenario."""
    state, copy = FOLDER / "state.json", FOLDER / "asks.scn"
    text = scenario.read_text(encoding="utf-8")
    copy.write_text(f"{text}\nsave {state}\n", encoding="utf-8")
    softcard("run", "--quiet", str(copy))
    saved = json.loads(state.read_text(encoding="utf-8"))
    ids = [row["id"] for row in saved["tables"]["destinations"]]
    asked = "".join(f"show destination {one}\nsend {one}\n" for one in ids)
    copy.write_text(f"{text}\n{asked}", encoding="utf-8")
    steps = lines("run", "--json", "--hex", str(copy))
    chains = [step["chain"] for step in steps if step["step"] == "chain"]
    packets = [step["way"] for step in steps if step["step"] == "packet"][-len(ids):]
    sweep = lines("sweep", "--json", str(scenario), status=1)
    return {"state": saved, "findings": lines("audit", "--json", str(scenario), status=1)[0]["findings"],
            "swept": sweep[:-1], "end": sweep[-1], "chains": dict(zip(ids, chains)), "packets": dict(zip(ids, packets))}


def main():
    folder = FOLDER / HOSTILE[0]
    folder.mkdir(parents=True, exist_ok=True)
    scenario, path = folder / HOSTILE[1], FOLDER / "card.html"
    scenario.write_text((HERE / "card.scn").read_text(encoding="utf-8"), encoding="utf-8")
    softcard("report", str(scenario), "-o", str(path))
    large = FOLDER / "provider-edge.html"
    softcard("report", "--no-sweep", "--until", "105", str(SCENARIOS / "provider-edge.scn"), "-o", str(large))
    assert large.stat().st_size < 1_500_000, large.stat().st_size  # a sweep adds a quarter of a megabyte
    truth = truth_of(scenario)
    browser = open_browser()
    try:
        page = Page(browser, path)
        for check in CHECKS.values():
            check(page, truth)
        check_links(browser, path)
        look(browser, path)
        page = Page(browser, large)
        is_quiet(page)
        fits(page, 1280)
        milliseconds = page.run("const [load] = performance.getEntriesByType('navigation'); return load.loadEventEnd")
        print(f"the provider edge's page opens in {milliseconds:.0f} ms")
        assert 0 < milliseconds < 5000, milliseconds  # the machine may be busy
        # A check that finds nothing wrong must be able to.
        good, broken = path.read_text(encoding="utf-8"), FOLDER / "broken.html"
        for what, (part, instead, name) in BROKEN.items():
            assert good.count(part) == 1, (what, good.count(part))
            broken.write_text(good.replace(part, instead), encoding="utf-8")
            try:
                CHECKS[name](Page(browser, broken), truth)
            except AssertionError:
                continue
            raise RuntimeError(f"nobody finds {what}")
    finally:
        browser.quit()


main()
