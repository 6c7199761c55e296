#!/usr/bin/python3
"""The pages of a printer application in Chromium, without a screen.

usage: browser.py set PRINTER_PAGE NAME=VALUE...   changes settings on the page Printing Defaults, and reads them there
       browser.py look PRINTER_PAGE DIRECTORY      at all pages: pictures are there, nothing is wider than a telephone,
                                                   the browser finds no error; pictures of the pages go to DIRECTORY
"""
import base64
import os
import sys
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import Select, WebDriverWait

SCREENS = {"desktop": (1280, 900, False), "telephone": (390, 844, True)}


def start(profile):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
                     "--disable-background-networking", "--disable-component-update", "--no-proxy-server",
                     "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE localhost", f"--user-data-dir={profile}"]:
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def field(browser, name):
    """What is there to change: as (read, write)."""
    element = browser.find_element(By.NAME, name)
    if element.tag_name == "select":
        choice = Select(element)
        return lambda: choice.first_selected_option.get_attribute("value"), choice.select_by_value

    def write(value):
        element.clear()
        element.send_keys(value)
    return lambda: element.get_attribute("value"), write


def change(browser, page, settings):
    browser.get(page + "/printing")
    for name, value in settings:
        field(browser, name)[1](value)
    form = browser.find_element(By.ID, "form")
    form.find_element(By.CSS_SELECTOR, "input[type=submit]").click()
    WebDriverWait(browser, 10).until(lambda b: "Changes saved" in b.find_element(By.TAG_NAME, "body").text)
    browser.get(page + "/printing")
    for name, value in settings:
        kept = field(browser, name)[0]()
        assert kept == value, f"{name} is {kept} on the page, expected {value}"


def look(browser, page, directory):
    os.makedirs(directory, exist_ok=True)
    for screen, (width, height, telephone) in SCREENS.items():
        browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": telephone})
        for name in ["", "/printing", "/last", "/jobs", "/media"]:
            browser.get(page + name)
            for image in browser.find_elements(By.TAG_NAME, "img"):
                size = browser.execute_script("return [arguments[0].naturalWidth, arguments[0].naturalHeight]", image)
                assert min(size) > 0, f"{page + name}: {image.get_attribute('src')} is not there"
            wide = browser.execute_script("return document.documentElement.scrollWidth")
            assert wide <= width, f"{page + name} is {wide} pixels wide on a screen of {width}"
            shot = browser.execute_cdp_cmd("Page.captureScreenshot", {"captureBeyondViewport": True})["data"]
            with open(f"{directory}/{screen}-{name[1:] or 'status'}.png", "wb") as file:
                file.write(base64.b64decode(shot))
    browser.get(page + "/last")
    body = browser.find_element(By.TAG_NAME, "body").text
    for text in ["Preview", "Single Dots", "Ink Coverage", "Tables"]:
        assert text in body, f"{page}/last does not show: {text}"
    images = [image.get_attribute("src") for image in browser.find_elements(By.TAG_NAME, "img")]
    for name in ["preview.png", "detail.png"]:
        assert any(name in image for image in images), f"{page}/last does not show {name}"


with tempfile.TemporaryDirectory() as profile:
    browser = start(profile)
    try:
        if sys.argv[1] == "set":
            change(browser, sys.argv[2], [setting.split("=", 1) for setting in sys.argv[3:]])
        else:
            look(browser, sys.argv[2], sys.argv[3])
        errors = [entry for entry in browser.get_log("browser") if entry["level"] in ("SEVERE", "WARNING")]
        assert not errors, errors
    finally:
        browser.quit()
