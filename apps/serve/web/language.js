// The viewer's language switch: the scene's "lang" chooses the chart's texts on the server,
// and the page's own words follow it. The page is written in English; Chinese is a table
// from those words to their translations, applied to text nodes, titles and placeholders.
"use strict";

const ZH = {
  "State points": "状态点", "Click the chart to place a point.": "点击焓湿图放置状态点。",
  "Join selected into a process": "将所选点连成处理过程", "kJ/kg to d": "kJ/kg 至 d",
  "Ratio line from selected point": "自所选点作热湿比线", "Processes": "处理过程", "Ratio lines": "热湿比线",
  "Chart": "焓湿图", "Show": "显示", "Title": "标题", "Isotherms": "等温线", "Constant d": "等含湿量线",
  "Constant h": "等焓线", "Relative humidity": "相对湿度", "Ratio protractor": "热湿比量角器",
  "Intervals": "间隔", "Range": "范围", "from": "从", "to": "至", "Air": "空气", "Pressure": "大气压",
  "Relations": "计算公式", "ASHRAE 2017, ideal gas": "ASHRAE 2017，理想气体",
  "Real gas (Hyland–Wexler 1983)": "实际气体（Hyland–Wexler 1983）", "Design conditions": "设计条件",
  "Summer": "夏季", "Winter": "冬季", "Outdoor t": "室外 t", "Outdoor wet bulb": "室外湿球温度",
  "Indoor t": "室内 t", "Indoor φ": "室内 φ", "Outdoor φ": "室外 φ", "Export": "导出", "Save": "保存",
  "Scene JSON": "场景 JSON", "no scene file given": "未指定场景文件", "Language": "语言",
  "Show or hide the panel": "显示或隐藏面板", "Select": "选择", "Name": "名称",
  "Name the point to use it in a process": "为点命名后才能用于处理过程", "Delete the point": "删除该点",
  "Delete the process": "删除该过程", "Delete the ratio line": "删除该热湿比线",
  "t from": "t 从", "d from": "d 从",
  "Dry bulb": "干球温度", "Wet bulb": "湿球温度", "Dew point": "露点温度", "Density": "密度",
  "Air handling": "空气处理", "Add step": "添加步骤", "Undo": "撤销", "Redo": "重做", "Report PDF": "报告 PDF",
  "States": "状态", "Steps": "步骤", "Mixing": "混合", "Cooling coil": "表冷器", "Heating / cooling": "加热 / 冷却",
  "Steam humidifier": "蒸汽加湿器", "Spray humidifier": "喷雾加湿器", "Air a (fresh)": "空气 a（新风）",
  "Air b (return)": "空气 b（回风）", "From": "从", "Remove this data set": "移除该数据集", "new process": "新过程",
};

// Messages the page builds around a value: their English beginnings.
const ZH_PREFIX = [["Saved to ", "已保存到 "], ["The chart could not be drawn: ", "无法绘制焓湿图："]];

const pageLanguage = { code: "en", original: new WeakMap() };

function translated(table, english) {
  const trimmed = english.trim();
  if (table[trimmed]) return english.replace(trimmed, table[trimmed]);
  for (const [en, zh] of ZH_PREFIX) if (english.startsWith(en)) return zh + english.slice(en.length);
  return english;
}

function translateNode(node) {
  const table = pageLanguage.code === "zh" ? ZH : null;
  const swap = (key, get, set) => {
    let orig = pageLanguage.original.get(node);
    if (!orig) pageLanguage.original.set(node, (orig = {}));
    if (!(key in orig)) orig[key] = get();
    const english = orig[key];
    const text = table ? translated(table, english) : english;
    if (get() !== text) set(text);
  };
  if (node.nodeType === Node.TEXT_NODE) {
    if (node.nodeValue.trim()) swap("text", () => node.nodeValue, (v) => { node.nodeValue = v; });
    return;
  }
  if (node.nodeType !== Node.ELEMENT_NODE) return;
  for (const attr of ["title", "placeholder", "alt"])
    if (node.hasAttribute(attr)) swap(attr, () => node.getAttribute(attr), (v) => node.setAttribute(attr, v));
  for (const child of node.childNodes) translateNode(child);
}

function applyPageLanguage(code) {
  pageLanguage.code = code === "zh" ? "zh" : "en";
  document.documentElement.lang = pageLanguage.code;
  translateNode(document.body);
}

// Lists and readouts are rebuilt by the page; their new words are translated as they appear.
new MutationObserver((changes) => {
  if (pageLanguage.code === "en") return;
  for (const c of changes) for (const n of c.addedNodes) translateNode(n);
}).observe(document.body, { childList: true, subtree: true });

(function addLanguageSwitch() {
  const select = document.createElement("select");
  select.id = "language";
  for (const [value, label] of [["en", "English"], ["zh", "中文"]]) {
    const o = document.createElement("option");
    o.value = value;
    o.textContent = label;
    select.append(o);
  }
  const label = document.createElement("label");
  label.append(document.createTextNode("Language "), select);
  const row = document.createElement("div");
  row.className = "row";
  row.append(label);
  document.getElementById("panel").prepend(row);

  select.addEventListener("change", () => {
    applyPageLanguage(select.value);
    putScene(Object.assign(structuredClone(scene || {}), { lang: select.value }));
  });
  // The scene's choice, else the server's (its --lang or the locale's).
  fetch("/api/info").then((r) => r.json()).then((info) => {
    const code = (scene && scene.lang) || info.lang || "en";
    select.value = code;
    applyPageLanguage(code);
  }).catch(() => {});
})();
