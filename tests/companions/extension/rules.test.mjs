import assert from "node:assert/strict";
import { test } from "node:test";
import { ruleLimit, rulesFor } from "../../../companions/extension/shared/rules.js";

const nothing = { addresses: [], blockList: [], passingSites: [] };

test("an address has two rules, for itself and for itself with a fragment", () => {
  const rules = rulesFor({ ...nothing, addresses: ["https://example.org/watch?v=1"] });
  assert.deepEqual(rules.map(({ condition }) => condition.urlFilter),
    ["|https://example.org/watch?v=1|", "|https://example.org/watch?v=1#"]);
  for (const { action, condition } of rules) {
    assert.deepEqual(action, { type: "block" });
    assert.equal(condition.isUrlFilterCaseSensitive, true);
    assert.deepEqual(condition.resourceTypes, ["main_frame"]);
    assert.deepEqual(condition.requestMethods, ["get"]);
  }
});

test("an address that a filter would read otherwise has no rule", () => {
  const addresses = ["https://example.org/a*b", "https://example.org/a|b", "https://example.org/a^b"];
  assert.deepEqual(rulesFor({ ...nothing, addresses }), []);
});

test("all sites of the block list are one rule, which leaves out what passes", () => {
  const [rule, ...more] = rulesFor({ ...nothing, blockList: ["a.org", "b.org"], passingSites: ["docs.a.org"] });
  assert.deepEqual(more, []);
  assert.deepEqual(rule.condition.requestDomains, ["a.org", "b.org"]);
  assert.deepEqual(rule.condition.excludedRequestDomains, ["docs.a.org"]);
});

test("an entry with a path stops that path and what lies below, and nothing that begins alike", () => {
  const [rule] = rulesFor({ ...nothing, blockList: ["a.org/c++"] });
  assert.deepEqual(rule.condition.requestDomains, ["a.org"]);
  const pattern = new RegExp(rule.condition.regexFilter);
  for (const address of ["https://a.org/c++", "http://x.a.org:81/c++/b", "https://a.org/c++?q", "https://a.org/c++#x"]) {
    assert.match(address, pattern);
  }
  for (const address of ["https://a.org/c++11", "https://a.org/c", "https://a.org/b/c++"]) {
    assert.doesNotMatch(address, pattern);
  }
});

test("there are never more rules than the limit, and the newest addresses stay", () => {
  const addresses = Array.from({ length: 5000 }, (_, index) => `https://example.org/${index}`);
  const rules = rulesFor({ addresses, blockList: ["a.org"], passingSites: [] });
  assert.equal(rules.length, ruleLimit);
  assert.equal(rules[1].condition.urlFilter, "|https://example.org/0|");
  assert.deepEqual(new Set(rules.map(({ id }) => id)).size, ruleLimit);
});

test("without anything blocked there are no rules", () => assert.deepEqual(rulesFor(nothing), []));
