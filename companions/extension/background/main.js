// The composition root of the background: makes every object and connects the browser's events.
// Listeners are added before anything is waited for, or an event that wakes the worker is lost.

import { Badge } from "./badge.js";
import { Bridge } from "./bridge.js";
import { Inbox } from "./inbox.js";
import { Inquiry } from "./inquiry.js";
import { Judge } from "./judge.js";
import { Knowledge } from "./knowledge.js";
import { browser, browserName } from "./platform.js";
import { RuleKeeper } from "./ruleKeeper.js";
import { TabView } from "./tabView.js";

const { webNavigation, tabs, alarms, runtime } = browser;
const clock = () => Date.now() / 1000;
const knowledge = new Knowledge({ storage: browser.storage, clock });
const rules = new RuleKeeper(browser.declarativeNetRequest);
const view = new TabView(browser);
const badge = new Badge({ action: browser.action, clock });

const bridge = new Bridge({
  connectNative: (name) => runtime.connectNative(name),
  hello: { browser: browserName, version: runtime.getManifest().version },
  onFrame: (frame) => {
    void loaded.then(() => {
      knowledge.takeFrame(frame);
      return changed();
    });
  },
  onLost: () => {
    void loaded.then(() => {
      knowledge.loseBridge();
      return changed();
    });
  },
});

const inquiry = new Inquiry({ knowledge, bridge, view, onLearnt: () => void changed() });
const judge = new Judge({ knowledge, inquiry, view, onLearnt: () => void changed() });
const inbox = new Inbox({ knowledge, inquiry, judge, view, clock, onChosen: () => changed(),
  ownOrigin: runtime.getURL("") });

// The rules of a worker that was ended are of a moment that nobody knows any more.
const loaded = Promise.all([knowledge.load(), rules.apply(null)]);

let silenceTimer;

/** Brings everything that can be seen in line with what is known. */
async function changed() {
  await rules.apply(knowledge.blockedNow);
  badge.show(knowledge);
  const { nextGrantEnd, silence } = knowledge;
  if (nextGrantEnd !== null) void alarms.create("grant", { when: nextGrantEnd * 1000 + 100 });
  clearTimeout(silenceTimer);
  if (silence !== null) silenceTimer = setTimeout(changed, silence * 1000 + 50);
  // The extension's own pages look again; there may be none.
  runtime.sendMessage({ type: "changed" }).catch(() => {});
  await judge.visitVisible();
}

/** Runs `handle` once what was kept is loaded; any event is also a chance to find the bridge. */
function handles(handle) {
  return async (...details) => {
    await loaded;
    bridge.ensure();
    await handle(...details);
  };
}

// The page that is seen in the tab: one that is only being prerendered has another number.
const mainFrame = (handle) => handles(async (details) => {
  if (details.frameId === 0) await handle(details);
});

webNavigation.onCommitted.addListener(mainFrame(async ({ tabId, url, transitionType }) => {
  await judge.forgetDocument(tabId);
  knowledge.noteVisit(tabId, { url, transition: transitionType });
  await judge.visit(tabId);
}));
webNavigation.onDOMContentLoaded.addListener(mainFrame(({ tabId }) => judge.visit(tabId)));
webNavigation.onHistoryStateUpdated.addListener(mainFrame(({ tabId }) => judge.visit(tabId)));
webNavigation.onErrorOccurred.addListener(mainFrame(({ tabId, url }) => judge.stopped(tabId, url)));
tabs.onUpdated.addListener(handles(async (tabId, { url, title, status }) => {
  if (title !== undefined) await judge.visitTitled(tabId, title);
  if (url !== undefined || status === "complete") await judge.visit(tabId);
}));
tabs.onActivated.addListener(handles(({ tabId }) => judge.visit(tabId)));
tabs.onReplaced.addListener(handles(async (tabId, oldTabId) => {
  knowledge.forgetTab(oldTabId);
  judge.forgetTab(oldTabId);
  await judge.visit(tabId);
}));
tabs.onRemoved.addListener(handles(async (tabId) => {
  knowledge.forgetTab(tabId);
  judge.forgetTab(tabId);
}));
alarms.onAlarm.addListener(handles(changed));
runtime.onStartup.addListener(handles(async () => {}));
runtime.onInstalled.addListener(handles(async ({ reason }) => {
  if (reason === "install") await tabs.create({ url: runtime.getURL("pages/welcome.html") });
}));
runtime.onMessage.addListener((message, sender, respond) => {
  void loaded.then(async () => {
    bridge.ensure();
    respond(await inbox.answer(message, sender) ?? null);
  }).catch(() => respond(null));
  return true;
});

void alarms.create("minute", { periodInMinutes: 1 });
void loaded.then(() => {
  bridge.ensure();
  badge.show(knowledge);
});
