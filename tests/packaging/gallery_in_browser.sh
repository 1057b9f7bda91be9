#!/usr/bin/env bash
# The gallery in a real browser: all pictures load, and the search shows what it should. 77 where there is no browser.
# Usage: gallery_in_browser.sh TOOL
set -euo pipefail
tool=$1

browser=$(command -v chromium || command -v chromium-browser || command -v google-chrome) || exit 77
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$tool" effects --class CLASS_WIPE --cell 64x36 --gallery "$scratch/gallery" --quiet

# A page that looks at the gallery as a visitor does and writes down what it sees.
cat > "$scratch/gallery/look.html" << 'PAGE'
<!DOCTYPE html><iframe id="page" src="index.html" width="1200" height="4000"></iframe><pre id="seen"></pre>
<script>
  const page = document.getElementById('page');
  const seen = () => [...page.contentDocument.querySelectorAll('li')].filter(card => card.offsetHeight > 0)
      .map(card => card.querySelector('h3').textContent).join(' ');
  page.onload = () => setTimeout(() => {
    const lines = [], images = [...page.contentDocument.images];
    lines.push('pictures ' + images.filter(image => image.complete && image.naturalWidth === 64).length + ' of ' + images.length);
    const search = page.contentDocument.getElementById('search');
    for (const text of ['wipe LEFT', 'fade', 'no such thing']) {
      search.value = text;
      search.dispatchEvent(new page.contentWindow.Event('input'));
      lines.push(text + ': ' + seen() + ', ' + page.contentDocument.getElementById('count').textContent);
    }
    lines.push('copy: ' + page.contentDocument.querySelector('button').textContent);
    document.getElementById('seen').textContent = lines.join('\n');
  }, 1000);
</script>
PAGE
"$browser" --headless --no-sandbox --disable-gpu --allow-file-access-from-files --virtual-time-budget=4000 \
    --user-data-dir="$scratch/profile" --dump-dom "file://$scratch/gallery/look.html" 2> /dev/null |
    sed -n '/id="seen"/,/<\/pre>/p' | sed 's/<[^>]*>//g' > "$scratch/seen"
diff "$scratch/seen" - << 'WANTED'
pictures 7 of 7
wipe LEFT: PATH_WIPELEFT, 1 effect
fade: PATH_FADE, 1 effect
no such thing: , 0 effects
copy: --key 0:PATH_AMPLIFYH:0 --key 1:PATH_AMPLIFYH:1
WANTED
