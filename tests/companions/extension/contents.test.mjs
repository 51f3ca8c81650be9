import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { readFileSync, readdirSync } from "node:fs";
import { test } from "node:test";

const root = new URL("../../../companions/extension/", import.meta.url);
const read = (path) => readFileSync(new URL(path, root), "utf8");
const json = (path) => JSON.parse(read(path));
const files = ["background", "content", "pages", "shared"]
  .flatMap((room) => readdirSync(new URL(`${room}/`, root)).map((name) => `${room}/${name}`));
const messages = json("_locales/en/messages.json");

// Names that are put together from a word of the code.
const families = { blind_: ["absent", "no_server", "no_key", "quota", "offline", "model"],
  phase_: ["offline", "unavailable", "idle", "off", "blind", "watching"],
  level_: ["host", "path", "title", "hostNote", "pathNote", "titleNote"],
  group_: ["social", "video", "news"],
  verdict_: ["none", "on_task", "off_task", "unsure", "byUser", "allowed", "listed"],
  obstacle_: ["noConsent", "noGoals", "notReady", "sensitive", "hasQuery", "notPublic", "notWatching"] };

function namedTexts() {
  const names = new Set(["extensionName", "extensionDescription"]);
  for (const file of files) {
    const content = read(file);
    for (const [, name] of content.matchAll(/data-text="(\w+)"/g)) names.add(name);
    for (const [, name] of content.matchAll(/"(\w+)"/g)) if (name in messages) names.add(name);
  }
  for (const [family, words] of Object.entries(families)) for (const word of words) names.add(family + word);
  return names;
}

test("each text that is named is there, and each that is there is named", () => {
  assert.deepEqual([...namedTexts()].filter((name) => !(name in messages)), []);
  assert.deepEqual(Object.keys(messages).filter((name) => !namedTexts().has(name)), []);
});

test("each placeholder of a text is defined, and none for nothing", () => {
  for (const [name, { message, placeholders = {} }] of Object.entries(messages)) {
    const used = [...message.matchAll(/\$(\w+)\$/g)].map(([, word]) => word.toLowerCase());
    assert.deepEqual(used.sort(), Object.keys(placeholders).sort(), name);
  }
});

test("the manifests differ in what the browsers differ in, and in nothing else", () => {
  const [chromium, firefox] = ["chromium", "firefox"].map((name) => json(`manifest.${name}.json`));
  for (const manifest of [chromium, firefox]) {
    for (const key of ["key", "minimum_chrome_version", "background", "browser_specific_settings"]) {
      delete manifest[key];
    }
  }
  assert.deepEqual(chromium, firefox);
});

test("no page of the extension is open to the web, to frames or to private windows", () => {
  for (const name of ["chromium", "firefox"]) {
    const manifest = json(`manifest.${name}.json`);
    assert.equal(manifest.web_accessible_resources, undefined);
    assert.equal(manifest.externally_connectable, undefined);
    assert.equal(manifest.content_scripts, undefined);
    assert.equal(manifest.incognito, "not_allowed");
    const policy = manifest.content_security_policy.extension_pages;
    assert.match(policy, /^default-src 'self';/);
    assert.match(policy, /frame-ancestors 'none'/);
    assert.doesNotMatch(policy, /unsafe|https?:/);
  }
});

test("the key in Chromium's manifest gives the id that the bridge is told", () => {
  const digest = createHash("sha256").update(Buffer.from(json("manifest.chromium.json").key, "base64"));
  const id = [...digest.digest("hex").slice(0, 32)]
    .map((digit) => String.fromCharCode(97 + parseInt(digit, 16))).join("");
  assert.equal(id, "hehdnfjmcoelfcbplfkbhhkahldimemb");
});

test("nothing is written as markup, and nothing is loaded from anywhere else", () => {
  for (const file of files) {
    const content = read(file);
    assert.doesNotMatch(content, /innerHTML|outerHTML|insertAdjacentHTML|document\.write|\beval\(|new Function/, file);
    assert.doesNotMatch(content, /console\./, file);
    assert.doesNotMatch(content, /(src|href)="(https?:)?\/\//, file);
    assert.doesNotMatch(content, /\bfetch\(|XMLHttpRequest|WebSocket|sendBeacon|EventSource/, file);
  }
});

test("each script can be read", () => {
  for (const file of files.filter((name) => name.endsWith(".js"))) {
    execFileSync(process.execPath, ["--check", new URL(file, root).pathname]);
  }
});
