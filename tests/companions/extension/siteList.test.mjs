import assert from "node:assert/strict";
import { test } from "node:test";
import { covers, listFrom, parseEntry, withEntry, withoutEntry }
  from "../../../companions/extension/shared/siteList.js";
import { suggestedSites } from "../../../companions/extension/shared/suggestedSites.js";

for (const [typed, entry] of [
  ["example.org", "example.org"],
  ["  WWW.Example.org/ ", "example.org"],
  ["https://www.example.org/forum/?page=2#top", "example.org/forum"],
  ["example.org:8080/a", "example.org/a"],
  ["bücher.example", "xn--bcher-kva.example"],
  ["[2001:db8::1]", "[2001:db8::1]"],
  ["", null], ["   ", null], ["word", null], ["two words.org", null], ["ftp://example.org", null],
  ["javascript://example.org", null], ["https://", null], ["*", null], ["*.example.org", null],
]) {
  test(`"${typed}" is the entry ${entry}`, () => assert.equal(parseEntry(typed), entry));
}

test("an entry covers its host and the hosts below, and none that only ends alike", () => {
  const list = ["example.org"];
  for (const address of ["https://example.org/", "http://example.org:81/a?b", "https://a.b.example.org/x"]) {
    assert.ok(covers(list, address), address);
  }
  for (const address of ["https://notexample.org/", "https://example.org.evil.test/", "https://org/",
    "about:blank"]) {
    assert.ok(!covers(list, address), address);
  }
});

test("an entry with a path covers that path and what lies below", () => {
  const list = ["example.org/forum"];
  assert.ok(covers(list, "https://example.org/forum"));
  assert.ok(covers(list, "https://example.org/forum/thread?id=1"));
  assert.ok(!covers(list, "https://example.org/forums"));
  assert.ok(!covers(list, "https://example.org/"));
});

test("a list holds each entry once, in order", () => {
  assert.deepEqual(withEntry(["b.org"], "a.org"), ["a.org", "b.org"]);
  assert.deepEqual(withEntry(["a.org"], "a.org"), ["a.org"]);
  assert.deepEqual(withoutEntry(["a.org", "b.org"], "a.org"), ["b.org"]);
});

test("a stored value that is no list, and entries that are none, are left out", () => {
  for (const stored of [undefined, null, "a.org", { 0: "a.org" }, 7]) {
    assert.deepEqual(listFrom(stored), []);
  }
  assert.deepEqual(listFrom(["b.org", 3, null, "word", "a.org", "b.org"]), ["a.org", "b.org"]);
});

test("all that the welcome page offers are entries, each once", () => {
  const all = Object.values(suggestedSites).flat();
  assert.deepEqual(all.filter((entry) => parseEntry(entry) !== entry), []);
  assert.equal(new Set(all).size, all.length);
});
