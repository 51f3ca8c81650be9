import assert from "node:assert/strict";
import { webcrypto } from "node:crypto";
import { test } from "node:test";
import { isLive, overrideKey, overrideLimit, withOverride }
  from "../../../companions/extension/shared/overrides.js";
import { settingsFrom } from "../../../companions/extension/shared/settings.js";
import { isReachedByForm } from "../../../companions/extension/shared/visit.js";

// Debian's runtime has it under this name only.
globalThis.crypto ??= webcrypto;

const day = 86400;

test("an override's key tells neither goals nor address, and differs by both and by the salt", async () => {
  const key = await overrideKey("salt", "Write", "https://example.org/a");
  assert.match(key, /^[0-9a-f]{64}$/);
  assert.equal(key, await overrideKey("salt", "Write", "https://example.org/a"));
  for (const other of [["tlas", "Write", "https://example.org/a"], ["salt", "Read", "https://example.org/a"],
    ["salt", "Write", "https://example.org/b"], ["saltWrite", "", "https://example.org/a"]]) {
    assert.notEqual(key, await overrideKey(...other));
  }
});

test("an override lives for thirty days", () => {
  const kept = withOverride({}, "a", 1000);
  assert.ok(isLive(kept, "a", 1000 + 30 * day - 1));
  assert.ok(!isLive(kept, "a", 1000 + 30 * day));
  assert.ok(!isLive(kept, "b", 1000));
  assert.ok(!isLive(kept, "constructor", 1000));
});

test("an override from the future does not live for ever", () => {
  assert.ok(!isLive({ a: 1000 + 2 * day }, "a", 1000));
});

test("the oldest overrides go first, and those that are over go with the next one", () => {
  const many = Object.fromEntries(Array.from({ length: overrideLimit }, (_, index) => [`k${index}`, index]));
  const kept = withOverride(many, "new", overrideLimit);
  assert.equal(Object.keys(kept).length, overrideLimit);
  assert.ok(!Object.hasOwn(kept, "k0") && Object.hasOwn(kept, "new"));
  assert.deepEqual(Object.keys(withOverride({ old: 0 }, "new", 31 * day)), ["new"]);
});

test("without a whole consent nobody has consented", () => {
  for (const consent of [undefined, null, true, "yes", "everything", 1, {}]) {
    assert.equal(settingsFrom({ consent }).consent, null);
  }
  assert.equal(settingsFrom(undefined).consent, null);
  for (const level of ["host", "path", "title"]) {
    assert.equal(settingsFrom({ consent: level }).consent, level);
  }
});

const address = "https://example.org/result";
const byForm = { address, isByForm: true };
for (const [previous, visit, expected] of [
  [undefined, { address, transition: "link" }, false],
  [undefined, { address, transition: "form_submit" }, true],
  [byForm, { address, transition: "reload" }, true],
  [byForm, { address: "https://example.org/else", transition: "reload" }, false],
  [byForm, { address, transition: "link" }, false],
  [{ address, isByForm: false }, { address, transition: "reload" }, false],
]) {
  test(`a ${visit.transition} after ${JSON.stringify(previous)} to ${visit.address}: ${expected}`, () => {
    assert.equal(isReachedByForm(previous, visit), expected);
  });
}
