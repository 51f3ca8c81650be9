import assert from "node:assert/strict";
import { mock, test } from "node:test";
import { Bridge, hostName } from "../../../companions/extension/background/bridge.js";

/** A browser's side of native ports: `ports` are those that were opened, with what was posted. */
function makeRoad() {
  const road = { ports: [], frames: [], losses: 0 };
  const connectNative = (name) => {
    const port = { name, posted: [], onMessage: signal(), onDisconnect: signal(),
      postMessage: (message) => port.posted.push(message),
      disconnect: () => { port.isClosed = true; } };
    road.ports.push(port);
    return port;
  };
  road.bridge = new Bridge({ connectNative, hello: { browser: "chromium", version: "1" },
    onFrame: (frame) => road.frames.push(frame), onLost: () => { road.losses += 1; } });
  return road;
}

function signal() {
  const listeners = [];
  return { addListener: (listener) => listeners.push(listener),
    emit: (...values) => listeners.forEach((listener) => listener(...values)) };
}

test("the first message is a hello, and a port that is open is not opened again", () => {
  const { bridge, ports } = makeRoad();
  bridge.ensure();
  bridge.ensure();
  assert.equal(ports.length, 1);
  assert.equal(ports[0].name, hostName);
  assert.deepEqual(ports[0].posted, [{ v: 1, type: "hello", browser: "chromium", version: "1" }]);
});

test("a bridge that ends at once is not started in a tight loop", () => {
  const { bridge, ports } = makeRoad();
  for (let attempt = 0; attempt < 100; attempt += 1) {
    bridge.ensure();
    ports.at(-1).onDisconnect.emit();
  }
  assert.equal(ports.length, 1);
});

test("a bridge that does not answer the hello is given up, and one that does is not", () => {
  mock.timers.enable(["setTimeout"]);
  const [hung, working] = [makeRoad(), makeRoad()];
  hung.bridge.ensure();
  working.bridge.ensure();
  working.ports[0].onMessage.emit({ v: 1, type: "server", state: "ready" });
  mock.timers.tick(60000);
  mock.timers.reset();
  assert.equal(hung.ports[0].isClosed, true);
  assert.equal(hung.losses, 1);
  assert.equal(working.losses, 0);
});

test("answers come to their questions, in any order", async () => {
  const { bridge, ports } = makeRoad();
  bridge.ensure();
  const [one, two] = [bridge.ask({ op: "classify" }), bridge.ask({ op: "classify" })];
  const [, first, second] = ports[0].posted;
  assert.notEqual(first.id, second.id);
  ports[0].onMessage.emit({ v: 1, id: second.id, verdict: "off_task", confidence: 1, reason: "" });
  ports[0].onMessage.emit({ v: 1, id: first.id, verdict: "on_task", confidence: 1, reason: "" });
  assert.equal((await one).verdict, "on_task");
  assert.equal((await two).verdict, "off_task");
});

test("answers that nobody has asked for, and second ones, are dropped", async () => {
  const { bridge, ports, frames } = makeRoad();
  bridge.ensure();
  const question = bridge.ask({ op: "classify" });
  const { id } = ports[0].posted[1];
  ports[0].onMessage.emit({ v: 1, id: id + 100, verdict: "off_task", confidence: 1, reason: "" });
  ports[0].onMessage.emit({ v: 1, id, verdict: "on_task", confidence: 1, reason: "" });
  ports[0].onMessage.emit({ v: 1, id, verdict: "off_task", confidence: 1, reason: "" });
  assert.equal((await question).verdict, "on_task");
  assert.deepEqual(frames, []);
});

test("a bridge that ends answers all open questions with its absence, once", async () => {
  const road = makeRoad();
  road.bridge.ensure();
  const question = road.bridge.ask({ op: "classify" });
  road.ports[0].onDisconnect.emit();
  road.ports[0].onDisconnect.emit();
  assert.equal((await question).error, "no_server");
  assert.equal(road.losses, 1);
  assert.equal((await road.bridge.ask({ op: "classify" })).error, "no_server");
});

test("what an old port still says is not heard", () => {
  const { bridge, ports, frames } = makeRoad();
  bridge.ensure();
  ports[0].onDisconnect.emit();
  ports[0].onMessage.emit({ v: 1, type: "server", state: "ready" });
  assert.deepEqual(frames, []);
});
