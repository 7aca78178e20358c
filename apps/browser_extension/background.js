// Lets pages of the listed sites read cards: takes a page's request, hands it to the host with the
// origin that the browser states, and the host's answer to the page. Nothing of a card is kept.
'use strict';

const HOST = '@IDCARD_BROWSER_HOST_NAME@';

/** What fails in the extension itself, in the languages of the pages. */
const FAILURES = {
  BROWSER_NOT_TOP_FRAME: {
    en: ['A frame within a page may not read cards.', 'Read the card from the page itself.'],
    zh: ['页面中的框架不得读卡。', '请由页面本身读卡。'],
  },
  BROWSER_BUSY: {
    en: ['A card is being read already.', 'Wait until that reading has ended, then read once more.'],
    zh: ['正在读取另一张卡。', '请等待该次读取结束，然后重新读取。'],
  },
  BROWSER_HOST_MISSING: {
    en: ['The program beside the browser could not be started, or ended.',
      'Install idcard-reader-browser again; "idcard-reader doctor" says what is missing.'],
    zh: ['浏览器的配套程序无法启动，或已结束。',
      '请重新安装 idcard-reader-browser；“idcard-reader doctor”会说明缺少什么。'],
  },
};
const SIGN = {
  en: (origin, time) => `${origin} read a card at ${time}`,
  zh: (origin, time) => `${origin} 于 ${time} 读取了一张卡`,
};

let reader = null; // the page that reads a card; null: none does

const languageOf = (tag) => (String(tag).toLowerCase().startsWith('zh') ? 'zh' : 'en');

/** In the form of the tool's own errors. */
function failure(name, request, cause) {
  const [headline, remedy] = FAILURES[name][languageOf(request?.language)];
  return { error: { code: null, name, headline, cause: cause || headline, remedy, exitStatus: 1 } };
}

/** A page that is shown, and not a frame within one. */
const isShownPage = ({ tab, frameId, documentLifecycle = 'active' }) =>
  tab !== undefined && frameId === 0 && documentLifecycle === 'active';

function showReading(origin) {
  const language = languageOf(chrome.i18n.getUILanguage());
  const time = new Date().toLocaleTimeString();
  const button = chrome.action ?? chrome.browserAction; // Firefox's name for it
  button.setTitle({ title: SIGN[language](origin, time) });
  button.setBadgeText({ text: '✓' });
}

function read(page, request) {
  const host = chrome.runtime.connectNative(HOST);
  reader = page;
  const end = (answer) => {
    if (reader !== page) return;
    reader = null;
    host.disconnect(); // the host then ends a reading that goes on
    if (answer) page.postMessage(answer);
  };
  host.onMessage.addListener((answer) => {
    if (answer.kind) showReading(page.sender.origin);
    end(answer);
  });
  host.onDisconnect.addListener(() => {
    end(failure('BROWSER_HOST_MISSING', request, chrome.runtime.lastError?.message));
  });
  page.onDisconnect.addListener(() => end(null));
  host.postMessage({ origin: page.sender.origin, request });
}

function serve(page) {
  page.onMessage.addListener((request) => {
    if (!isShownPage(page.sender)) page.postMessage(failure('BROWSER_NOT_TOP_FRAME', request));
    else if (reader) page.postMessage(failure('BROWSER_BUSY', request));
    else read(page, request);
  });
}

chrome.runtime.onConnectExternal.addListener(serve); // Chromium: from the page itself
chrome.runtime.onConnect.addListener(serve); // Firefox: from relay.js
