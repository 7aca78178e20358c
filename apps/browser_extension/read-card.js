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
  const language = (document.documentElement.lang || navigator.language).replace(/_/g, '-');
  const texts = language.toLowerCase().startsWith('zh')
    ? {
      BROWSER_EXTENSION_MISSING: ['此浏览器中没有读卡扩展程序，或此网站不得使用该扩展程序。',
        '请管理员用 idcard-browser-setup 允许此网站。'],
      BROWSER_PAGE_LEFT: ['读卡时离开了此网页。', '请重新读卡。'],
    } : {
      BROWSER_EXTENSION_MISSING: ['This browser has no extension that reads cards, or this site may not use it.',
        'Ask the administrator to allow the site with idcard-browser-setup.'],
      BROWSER_PAGE_LEFT: ['The page was left while a card was read.', 'Read the card once more.'],
    };

  return new Promise((resolve, reject) => {
    const settle = (answer) => {
      removeEventListener('pagehide', leave);
      if (!answer) fail('BROWSER_EXTENSION_MISSING');
      else if (answer.kind) resolve(answer); // a photo that was not decoded is its member "error"
      else reject(new CardError(answer.error));
    };
    const fail = (name) => {
      const [headline, remedy] = texts[name];
      reject(new CardError({ name, headline, cause: headline, remedy }));
    };
    const leave = () => { // the browser may keep the page for the way back
      stop();
      fail('BROWSER_PAGE_LEFT');
    };
    addEventListener('pagehide', leave, { once: true });
    const ask = globalThis.chrome ? askExtension : askRelay;
    const stop = ask({ include, timeout, language }, settle);
  });

  function askExtension(request, settle) {
    const port = chrome.runtime?.connect?.('@IDCARD_EXTENSION_ID@');
    if (!port) return settle(null);
    port.onDisconnect.addListener(() => settle(null));
    port.onMessage.addListener((answer) => {
      port.disconnect();
      settle(answer);
    });
    port.postMessage(request);
    return () => port.disconnect();
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
    return () => port.close();
  }
}
