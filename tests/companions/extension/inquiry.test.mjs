import assert from "node:assert/strict";
import { EventEmitter, once } from "node:events";
import { test } from "node:test";
import { Inquiry } from "../../../companions/extension/background/inquiry.js";
import { watching } from "./knowing.mjs";

const page = "https://example.org/a";
const seen = { address: page, title: "A title", description: "", isSensitive: false };

/** An inquiry whose looks at pages end when the test says so. */
async function makeInquiry() {
  const made = { ...await watching(), questions: [], tab: { active: true }, looks: [],
    events: new EventEmitter(), answer: { kind: "answer", verdict: "on_task", confidence: 1, reason: "" } };
  await made.knowledge.changeSettings({ consent: "title" });
  const view = {
    look: () => new Promise((resolve) => {
      made.looks.push(resolve);
      made.events.emit("look");
    }),
    tab: async () => made.tab,
  };
  const bridge = { ask: async (question) => {
    made.questions.push(question);
    return made.answer;
  } };
  made.inquiry = new Inquiry({ knowledge: made.knowledge, bridge, view, onLearnt: () => {} });
  return made;
}

/** Waits until the page is being looked at. */
async function reachLook({ looks, events }) {
  if (looks.length === 0) await once(events, "look");
}

/** Asks about the page while `meanwhile` happens; gives what `ask` has given. */
async function askWhile(made, meanwhile, { isOrdered = false, looks = 1 } = {}) {
  const asking = made.inquiry.ask(1, page, isOrdered);
  await reachLook(made);
  await meanwhile(made);
  for (let look = 0; look < looks; look += 1) {
    await reachLook(made);
    made.looks.shift()(seen);
  }
  return asking;
}

test("a page is asked about when it has been looked at", async () => {
  const made = await makeInquiry();
  assert.equal(await askWhile(made, () => {}), null);
  assert.deepEqual(made.questions, [{ op: "classify",
    page: { origin: "https://example.org", path: "/a", title: "A title", description: "" } }]);
});

for (const [what, meanwhile] of [
  ["the session ends", ({ say }) => say({ type: "session", state: "inactive" })],
  ["the user switches it off", ({ knowledge }) => knowledge.turnOff(true)],
  ["the user withdraws the consent", ({ knowledge }) => knowledge.changeSettings({ consent: null })],
  ["the server is gone", ({ say }) => say({ type: "server", state: "absent" })],
]) {
  for (const isOrdered of [false, true]) {
    test(`nobody is told about a page when ${what} during the look, ordered: ${isOrdered}`, async () => {
      const made = await makeInquiry();
      assert.notEqual(await askWhile(made, meanwhile, { isOrdered }), null);
      assert.deepEqual(made.questions, []);
    });
  }
}

for (const [what, meanwhile] of [
  ["its site is allowed", ({ knowledge }) => knowledge.changeSettings({ allowList: ["example.org"] })],
  ["its site is blocked", ({ knowledge }) => knowledge.changeSettings({ blockList: ["example.org"] })],
  ["it is called on task", ({ knowledge }) => knowledge.override(page)],
  ["its tab is hidden", (made) => { made.tab = { active: false }; }],
  ["its tab is closed", (made) => { made.tab = null; }],
]) {
  test(`nobody is told about a page when ${what} during the look`, async () => {
    const made = await makeInquiry();
    await askWhile(made, meanwhile);
    assert.deepEqual(made.questions, []);
  });
}

test("the user may have a page judged that nobody sees", async () => {
  const made = await makeInquiry();
  made.tab = { active: false };
  assert.equal(await askWhile(made, () => {}, { isOrdered: true }), null);
  assert.equal(made.questions.length, 1);
});

test("a fresh answer is wanted from the server, for a page that is still to be asked about", async () => {
  const made = await makeInquiry();
  made.inquiry.askAfresh(page);
  await askWhile(made, ({ knowledge }) => knowledge.changeSettings({ allowList: ["example.org"] }));
  assert.deepEqual(made.questions, []);
  await made.knowledge.changeSettings({ allowList: [] });
  await askWhile(made, () => {});
  assert.equal(made.questions[0].fresh, true);
});

test("what is told is what the user allows when it is told", async () => {
  const made = await makeInquiry();
  await askWhile(made, ({ knowledge }) => knowledge.changeSettings({ consent: "host" }), { looks: 2 });
  assert.deepEqual(made.questions.map(({ page: told }) => told),
    [{ origin: "https://example.org", path: "/", title: "", description: "" }]);
});

test("a session with other goals that begins during the look has its own answer", async () => {
  const made = await makeInquiry();
  await askWhile(made, ({ start }) => start("Read", "B"), { looks: 2 });
  assert.equal(made.questions.length, 1);
  assert.equal(made.knowledge.verdict(page).verdict, "on_task");
});

test("a page that other goals already let through is not asked about for them", async () => {
  const made = await makeInquiry();
  made.start("Read", "B");
  await made.knowledge.override(page);
  made.start("Write", "C");
  await askWhile(made, ({ start }) => start("Read", "D"));
  assert.deepEqual(made.questions, []);
  assert.equal(made.knowledge.verdict(page).isByUser, true);
});

const failure = { kind: "answer", error: "model", retryAfter: 0 };

test("a page that the model fails at twice counts as unsure, and silences no others", async () => {
  const made = await makeInquiry();
  made.answer = failure;
  await askWhile(made, () => {});
  assert.equal(made.knowledge.phase, "blind");
  assert.equal(made.knowledge.verdict(page), undefined);
  made.time.now += 15;
  await askWhile(made, () => {});
  assert.equal(made.knowledge.phase, "watching");
  assert.equal(made.knowledge.verdict(page).verdict, "unsure");
  assert.equal(made.questions.length, 2);
});

test("a model that failed at a page is asked about it for other goals", async () => {
  const made = await makeInquiry();
  made.answer = failure;
  await askWhile(made, () => {});
  made.start("Read", "B");
  made.time.now += 15;
  await askWhile(made, () => {});
  assert.equal(made.knowledge.verdict(page), undefined);
  assert.equal(made.knowledge.phase, "blind");
});

test("another error says nothing about the page, however often it comes", async () => {
  const made = await makeInquiry();
  made.answer = { ...failure, error: "offline" };
  for (let time = 0; time < 3; time += 1) {
    await askWhile(made, () => {});
    made.time.now += 15;
  }
  assert.equal(made.knowledge.verdict(page), undefined);
});
