import assert from "node:assert/strict";
import { test } from "node:test";
import { RuleKeeper } from "../../../companions/extension/background/ruleKeeper.js";
import { parseFrame } from "../../../companions/extension/shared/frames.js";
import { makeKnowledge, watching } from "./knowing.mjs";

const off = { verdict: "off_task", confidence: 0.9, reason: "" };
const page = "https://example.org/a";

test("a restarted worker knows nothing until the bridge speaks, and then what it knew", async () => {
  const { knowledge, areas } = await watching();
  knowledge.setVerdict(page, off);
  const again = await makeKnowledge(areas);
  assert.equal(again.knowledge.phase, "offline");
  assert.equal(again.knowledge.blockedNow, null);
  again.start();
  again.say({ type: "server", state: "ready" });
  assert.equal(again.knowledge.decide(page).action, "block");
});

test("another session forgets verdicts, grants, the switch and what was told", async () => {
  const { knowledge, start } = await watching();
  knowledge.setVerdict(page, off);
  knowledge.grant(page);
  knowledge.turnOff(true);
  knowledge.setBlindnessTold();
  start("Read", "B");
  assert.equal(knowledge.phase, "watching");
  assert.equal(knowledge.decide(page).action, "ask");
  assert.equal(knowledge.isBlindnessTold, false);
});

test("a pause frees everything and forgets nothing", async () => {
  const { knowledge, say, start } = await watching();
  knowledge.setVerdict(page, off);
  say({ type: "session", state: "inactive" });
  assert.equal(knowledge.blockedNow, null);
  start();
  assert.deepEqual(knowledge.blockedNow.addresses, [page]);
});

test("an override counts for its goals alone, and for thirty days", async () => {
  const { knowledge, time, start } = await watching();
  await knowledge.override(page);
  assert.equal(knowledge.decide(page).action, "pass");
  assert.equal(await knowledge.isOverridden(page), true);
  start("Read", "B");
  assert.equal(await knowledge.isOverridden(page), false);
  start("Write", "C");
  assert.equal(await knowledge.isOverridden(page), true);
  time.now += 31 * 86400;
  assert.equal(await knowledge.isOverridden(page), false);
});

test("neither addresses nor goals are kept for good", async () => {
  const { knowledge, areas } = await watching();
  knowledge.setVerdict(page, { ...off, page: { origin: "https://example.org" } });
  knowledge.noteVisit(1, { url: page, transition: "link" });
  await knowledge.override(page);
  const lasting = JSON.stringify(areas.local.content);
  for (const secret of ["example.org", "Write"]) assert.ok(!lasting.includes(secret), secret);
});

test("a grant ends after ten minutes, also for the rules", async () => {
  const { knowledge, time } = await watching();
  knowledge.setVerdict(page, off);
  knowledge.grant(page);
  assert.deepEqual(knowledge.blockedNow.addresses, []);
  assert.equal(knowledge.nextGrantEnd, time.now + 600);
  time.now += 600;
  assert.deepEqual(knowledge.blockedNow.addresses, [page]);
  assert.equal(knowledge.nextGrantEnd, null);
});

test("a site of which a part is allowed is not stopped by a rule", async () => {
  const { knowledge } = await watching();
  await knowledge.changeSettings({ blockList: ["a.org", "b.org"], allowList: ["docs.a.org/work", "free.b.org"] });
  assert.deepEqual(knowledge.blockedNow.blockList, ["b.org"]);
  assert.deepEqual(knowledge.blockedNow.passingSites, ["free.b.org"]);
  assert.equal(knowledge.decide("https://a.org/").action, "block");
  assert.equal(knowledge.decide("https://docs.a.org/work/x").action, "pass");
});

for (const [blockedEntry, allowedEntry, address] of [
  ["a.org", "a.org/work", "https://a.org/work/x"],
  ["old.a.org", "a.org/work", "https://old.a.org/work/x"],
  ["a.org/work/old", "a.org/work", "https://a.org/work/old/x"],
  ["a.org/work", "docs.a.org/work/x", "https://docs.a.org/work/x"],
  ["a.org/work", "a.org/work", "https://a.org/work"],
]) {
  test(`no rule for ${blockedEntry} stops what is allowed by ${allowedEntry}`, async () => {
    const { knowledge } = await watching();
    await knowledge.changeSettings({ blockList: [blockedEntry, "b.org"], allowList: [allowedEntry] });
    assert.equal(knowledge.decide(address).action, "pass");
    assert.deepEqual(knowledge.blockedNow.blockList, ["b.org"]);
  });
}

test("a rule stays where what is allowed lies beside it", async () => {
  const { knowledge } = await watching();
  const blockList = ["a.org/play", "b.org", "bb.org/worker", "docs.a.org/play"];
  await knowledge.changeSettings({ blockList, allowList: ["a.org/work", "bb.org/work"] });
  assert.deepEqual(knowledge.blockedNow.blockList, blockList);
});

test("an error that says nothing about the next page changes nothing", async () => {
  const { knowledge } = await watching();
  assert.equal(knowledge.takeError(parseFrame({ v: 1, id: 1, error: "no_session" })), false);
  assert.equal(knowledge.takeError(parseFrame({ v: 1, id: 1, error: "quota", retry_after: 5 })), true);
  assert.equal(knowledge.silence, 5);
});

test("an error that comes after the bridge is lost does not bring it back", async () => {
  const { knowledge } = await watching();
  knowledge.loseBridge();
  assert.equal(knowledge.takeError(parseFrame({ v: 1, id: 1, error: "offline" })), false);
  assert.equal(knowledge.phase, "offline");
});

/** The browser's rules, which refuse a whole call where one rule is wrong, as the real ones do. */
function makeRules({ refuses = () => false } = {}) {
  const made = { rules: [], calls: 0,
    getSessionRules: async () => made.rules,
    isRegexSupported: async ({ regex }) => ({
      isSupported: !refuses({ condition: { regexFilter: regex } }) }),
    updateSessionRules: async ({ removeRuleIds, addRules }) => {
      made.calls += 1;
      if (addRules.some(refuses)) throw new Error("refused");
      made.rules = [...made.rules.filter(({ id }) => !removeRuleIds.includes(id)), ...addRules];
    } };
  return made;
}

const blocked = { addresses: [page], blockList: [], passingSites: [] };

test("rules are replaced in one call, and not at all where they are the same", async () => {
  const rules = makeRules();
  const keeper = new RuleKeeper(rules);
  await keeper.apply(blocked);
  await keeper.apply(blocked);
  assert.equal(rules.calls, 1);
  assert.equal(rules.rules.length, 2);
  await keeper.apply(null);
  assert.equal(rules.calls, 2);
  assert.deepEqual(rules.rules, []);
});

test("rules that the browser refuses leave none behind, and the next ones are tried", async () => {
  let isRefusing = true;
  const rules = makeRules({ refuses: () => isRefusing });
  const keeper = new RuleKeeper(rules);
  await keeper.apply(blocked);
  assert.deepEqual(rules.rules, []);
  isRefusing = false;
  await keeper.apply(blocked);
  assert.equal(rules.rules.length, 2);
});

test("changes that come at once end in the last one", async () => {
  const rules = makeRules();
  const keeper = new RuleKeeper(rules);
  await Promise.all([keeper.apply(blocked), keeper.apply(null), keeper.apply({ ...blocked,
    addresses: ["https://example.org/last"] })]);
  assert.equal(rules.rules[0].condition.urlFilter, "|https://example.org/last|");
});

test("a part of a site that the browser can make no rule of takes no other rule away", async () => {
  const rules = makeRules({ refuses: ({ condition }) => condition.regexFilter?.length > 99 });
  const tooLong = `a.org/${"x".repeat(100)}`;
  await new RuleKeeper(rules).apply({ ...blocked, blockList: [tooLong, "a.org/short", "b.org"] });
  assert.deepEqual(rules.rules.map(({ condition }) => condition.requestDomains ?? condition.urlFilter),
    [["b.org"], ["a.org"], `|${page}|`, `|${page}#`]);
});
