// Declines a card that offers another browser. Runs at document end in every frame.
(() => {
  const labels = ["don't switch", "don\u2019t switch", "no thanks"];
  const depth = 6;

  const isPromotionButton = (element) => labels.includes(element.textContent.trim().toLowerCase());

  const dismiss = (root) => {
    const buttons = root.querySelectorAll ? root.querySelectorAll("button, [role=button]") : [];
    for (const button of buttons) {
      if (!isPromotionButton(button)) continue;
      let element = button;
      for (let level = 0; level < depth && element; ++level, element = element.parentElement) {
        if (/\bchrome\b/i.test(element.textContent)) {
          button.click();
          return true;
        }
      }
    }
    return false;
  };

  const observer = new MutationObserver((records) => {
    for (const record of records) {
      for (const node of record.addedNodes) {
        if (node instanceof Element && dismiss(node)) return;
      }
    }
  });

  const start = () => {
    dismiss(document);
    // The card may come back later.
    observer.observe(document.documentElement, { childList: true, subtree: true });
  };

  if (document.readyState === "loading") document.addEventListener("DOMContentLoaded", start);
  else start();
})();
