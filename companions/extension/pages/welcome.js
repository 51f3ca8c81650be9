// The first page: what leaves the browser, and consent to it. Nothing is chosen before the user does.

import { chosenLevel, fillLevels } from "./levels.js";
import { suggestedSites } from "../shared/suggestedSites.js";
import { ask, browser, byId, fillTexts, isAlone, made, text } from "./page.js";

const allPages = { origins: browser.runtime.getManifest().host_permissions };

async function start() {
  const level = chosenLevel();
  if (level === null) {
    byId("startStatus").textContent = text("chooseLevel");
    document.querySelector("input[name=level]").focus();
    return;
  }
  await ask("consent", { level });
  byId("startStatus").textContent = text("judgingStarted");
}

function groupOf([name, sites]) {
  const choice = made("div", { className: "choice" });
  const input = made("input");
  Object.assign(input, { type: "checkbox", name: "group", value: name, id: `group-${name}` });
  input.setAttribute("aria-describedby", `sites-${name}`);
  const words = made("div");
  const label = made("label", { content: text(`group_${name}`) });
  label.htmlFor = input.id;
  const list = made("p", { className: "quiet", content: sites.join(", ") });
  list.id = `sites-${name}`;
  words.append(label, list);
  choice.append(input, words);
  return choice;
}

async function addPicked() {
  const picked = [...document.querySelectorAll("input[name=group]:checked")];
  if (picked.length > 0) {
    const entries = picked.flatMap(({ value }) => suggestedSites[value]);
    await ask("list/add", { list: "blockList", entries });
  }
  byId("addStatus").textContent = text(picked.length > 0 ? "pickedAdded" : "pickFirst");
}

async function showPermission() {
  byId("permission").hidden = await browser.permissions.contains(allPages);
}

if (isAlone()) {
  fillTexts();
  byId("permission").setAttribute("aria-label", text("permissionGrant"));
  const { settings } = await ask("state");
  fillLevels(settings.consent);
  byId("groups").append(...Object.entries(suggestedSites).map(groupOf));
  byId("start").addEventListener("click", start);
  byId("add").addEventListener("click", addPicked);
  byId("grantPermission").addEventListener("click", async () => {
    await browser.permissions.request(allPages);
    await showPermission();
  });
  await showPermission();
}
