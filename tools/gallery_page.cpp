#include "tools/gallery_page.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace captionfx {
namespace {

constexpr std::string_view kHead = R"html(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>CaptionFx effects</title>
<style>
  :root { color-scheme: dark; --ink: #e8e6e1; --faint: #a9b0bb; --accent: #ffc861; --card: #262a31; --edge: #3a404a; }
  body { margin: 0; background: #1e2126; color: var(--ink); font: 16px/1.45 system-ui, sans-serif; }
  header { position: sticky; top: 0; z-index: 1; display: flex; flex-wrap: wrap; gap: .6rem 1.2rem; align-items: center;
           padding: .9rem 1.5rem; background: #1e2126ee; border-bottom: 1px solid var(--edge); }
  h1 { margin: 0; font-size: 1.25rem; }
  input { flex: 1 1 14rem; max-width: 26rem; padding: .5rem .8rem; border: 1px solid var(--edge); border-radius: .5rem;
          background: #15171b; color: inherit; font: inherit; }
  :focus-visible { outline: 2px solid var(--accent); outline-offset: 2px; }
  #count { color: var(--faint); }
  main { padding: 0 1.5rem 3rem; }
  h2 { margin: 1.8rem 0 .8rem; font-size: 1.05rem; color: var(--accent); }
  h2 code { color: var(--faint); font-size: .8rem; font-weight: normal; margin-left: .5rem; }
  ul { display: grid; grid-template-columns: repeat(auto-fill, minmax(15rem, 1fr)); gap: 1rem; margin: 0; padding: 0;
       list-style: none; }
  li { overflow: hidden; background: var(--card); border: 1px solid var(--edge); border-radius: .6rem; }
  li[hidden], section[hidden] { display: none; }
  img, .absent { display: block; width: 100%; height: auto; aspect-ratio: @RATIO@; }
  .absent { display: grid; place-items: center; color: var(--faint); }
  .about { padding: .6rem .8rem .8rem; }
  h3 { margin: 0; font-size: .9rem; overflow-wrap: anywhere; }
  p { margin: .15rem 0 .5rem; color: var(--faint); font-size: .8rem; }
  p:empty { min-height: .4rem; margin: 0; }
  button { width: 100%; padding: .4rem .5rem; border: 1px solid var(--edge); border-radius: .4rem; background: #15171b;
           color: inherit; font: .75rem ui-monospace, monospace; text-align: left; cursor: copy; overflow-wrap: anywhere; }
  button:hover { border-color: var(--accent); }
  button.copied { border-color: #7bd88f; color: #7bd88f; }
</style>
<header>
  <h1>CaptionFx effects</h1>
  <input id="search" type="search" placeholder="Search: fade, slide, wipe, left …" aria-label="Search effects" autofocus>
  <span id="count" role="status"></span>
</header>
<main>
)html";

constexpr std::string_view kTail = R"html(</main>
<script>
  const search = document.getElementById('search'), count = document.getElementById('count');
  const cards = [...document.querySelectorAll('li')], sections = [...document.querySelectorAll('section')];
  function show() {
    const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
    for (const card of cards) card.hidden = !words.every(word => card.dataset.words.includes(word));
    for (const section of sections) section.hidden = !section.querySelector('li:not([hidden])');
    const seen = cards.filter(card => !card.hidden).length;
    count.textContent = seen === 1 ? '1 effect' : seen + ' effects';
  }
  async function copy(button) {
    const text = button.textContent;
    try {
      await navigator.clipboard.writeText(text);
    } catch {  // pages from a disk have no clipboard of their own
      const range = document.createRange();
      range.selectNodeContents(button);
      getSelection().removeAllRanges();
      getSelection().addRange(range);
      document.execCommand('copy');
    }
    button.classList.add('copied');
    setTimeout(() => button.classList.remove('copied'), 900);
  }
  document.querySelector('main').addEventListener('click', event => {
    const button = event.target.closest('button');
    if (button) copy(button);
  });
  search.addEventListener('input', () => { history.replaceState(null, '', '#' + encodeURIComponent(search.value)); show(); });
  function fromAddress() { search.value = decodeURIComponent(location.hash.slice(1)); show(); }
  addEventListener('hashchange', fromAddress);
  fromAddress();
</script>
</html>
)html";

constexpr std::array kClassNames = {
    std::pair{"CLASS_SLIDE", "Slide"},     std::pair{"CLASS_FLY", "Fly"},
    std::pair{"CLASS_ROTATE", "Rotate"},   std::pair{"CLASS_POPUP", "Pop up"},
    std::pair{"CLASS_WIPE", "Wipe"},       std::pair{"CLASS_ROLLNCRAWL", "Roll and crawl"},
    std::pair{"CLASS_SPECIAL", "Special"}, std::pair{"CLASS_NOEFFECT", "No effect"},
};

std::string TitleOf(std::string_view effectClass) {
    const auto name =
        std::ranges::find(kClassNames, effectClass, [](const auto& pair) { return std::string_view(pair.first); });
    return name == kClassNames.end() ? std::string(effectClass) : name->second;
}

std::string Replaced(std::string_view text, std::string_view mark, const std::string& value) {
    std::string result(text);
    return result.replace(result.find(mark), mark.size(), value);
}

std::string LowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::string Card(const GalleryEntry& entry, FrameSize picture) {
    const std::string name(entry.effect.name);
    const std::string note = entry.effect.isImageBased ? "works on the finished image"
                             : entry.effect.passes > 1 ? "draws each character twice"
                                                       : "";
    std::string card =
        "<li data-words=\"" +
        LowerCase(name + " " + std::string(entry.effect.effectClass) + " " + TitleOf(entry.effect.effectClass)) + "\">";
    if (entry.picture.empty()) {
        card += "<div class=\"absent\">not drawn by this library</div>";
    } else {
        card += "<img loading=\"lazy\" src=\"" + entry.picture + "\" alt=\"" + name + "\" width=\"" +
                std::to_string(picture.width) + "\" height=\"" + std::to_string(picture.height) + "\">";
    }
    return card + "<div class=\"about\"><h3>" + name + "</h3><p>" + note +
           "</p><button title=\"Copy\" type=\"button\">--key 0:" + name + ":0 --key 1:" + name +
           ":1</button></div></li>\n";
}

}  // namespace

std::string GalleryPage(std::span<const GalleryEntry> entries, FrameSize picture) {
    std::vector<std::string_view> classes;
    for (const GalleryEntry& entry : entries) {
        if (std::ranges::find(classes, entry.effect.effectClass) == classes.end())
            classes.push_back(entry.effect.effectClass);
    }
    std::string page =
        Replaced(kHead, "@RATIO@", std::to_string(picture.width) + " / " + std::to_string(picture.height));
    for (const std::string_view effectClass : classes) {
        page += "<section><h2>" + TitleOf(effectClass) + "<code>" + std::string(effectClass) + "</code></h2><ul>\n";
        for (const GalleryEntry& entry : entries) {
            if (entry.effect.effectClass == effectClass) page += Card(entry, picture);
        }
        page += "</ul></section>\n";
    }
    return page.append(kTail);
}

}  // namespace captionfx
