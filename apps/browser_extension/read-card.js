// For a page that reads cards: <script src="read-card.js"></script>, and then
//
//   const card = await readCard({ include: ['photo', 'pictures'], timeout: 10 });
//
// `card` is what "idcard-reader read --json" prints. A failure is thrown as a CardError, with a name
// for the page and a headline and a remedy for the user, in the page's language.
'use strict';

class CardError extends Error {
  constructor({ name, headline, cause, remedy }) {
    super(headline);
    Object.assign(this, { name, headline, cause, remedy });
  }
}

function readCard({ include = [], timeout = 10 } = {}) {
  const language = document.documentElement.lang || navigator.language;
  const missing = language.toLowerCase().startsWith('zh')
    ? { headline: '此浏览器中没有读卡扩展程序，或此网站不得使用该扩展程序。',
      remedy: '请管理员用 idcard-browser-setup 允许此网站。' }
    : { headline: 'This browser has no extension that reads cards, or this site may not use it.',
      remedy: 'Ask the administrator to allow the site with idcard-browser-setup.' };

  return new Promise((resolve, reject) => {
    const settle = (answer) => {
      if (!answer) reject(new CardError({ name: 'BROWSER_EXTENSION_MISSING', cause: missing.headline, ...missing }));
      else if (answer.kind) resolve(answer); // a photo that was not decoded is its member "error"
      else reject(new CardError(answer.error));
    };
    const ask = globalThis.chrome ? askExtension : askRelay;
    ask({ include, timeout, language }, settle);
  });

  function askExtension(request, settle) {
    const port = chrome.runtime?.connect?.('@IDCARD_EXTENSION_ID@');
    if (!port) {
      settle(null);
      return;
    }
    port.onDisconnect.addListener(() => settle(null));
    port.onMessage.addListener((answer) => {
      port.disconnect();
      settle(answer);
    });
    port.postMessage(request);
  }

  /** In Firefox, where the extension has a part of its own in the page. */
  function askRelay(request, settle) {
    const { port1: port, port2: itsPort } = new MessageChannel();
    const silence = setTimeout(() => settle(null), 1000);
    port.onmessage = ({ data }) => {
      clearTimeout(silence);
      if ('answer' in data) settle(data.answer);
    };
    port.postMessage(request);
    window.postMessage('@IDCARD_FIREFOX_ID@', location.origin, [itsPort]);
  }
}
