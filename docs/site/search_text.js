// Adds the sections whose text contains all words of the search to Doxygen's results, which are names only.
(function () {
    'use strict';
    var MostResults = 30;
    var SnippetLength = 90;

    var words = unescape(window.location.search.substring(1)).toLowerCase().split(/\s+/).filter(function (word) {
        return word.length > 1;
    });

    // Higher is better: headings before text, then the number of occurrences. 0 if a word is missing.
    function scoreOf(entry) {
        var heading = (entry[1] + ' ' + entry[2]).toLowerCase();
        var text = entry[3].toLowerCase();
        return words.reduce(function (score, word) {
            var count = text.split(word).length - 1;
            var isInHeading = heading.indexOf(word) >= 0;
            return score > 0 && (count > 0 || isInHeading) ? score + Math.min(count, 9) + (isInHeading ? 10 : 0) : 0;
        }, 1);
    }

    function append(parent, tag, className, text) {
        var element = parent.appendChild(document.createElement(tag));
        element.className = className;
        element.textContent = text;
        return element;
    }

    function addSnippet(parent, text) {
        var at = Math.max(text.toLowerCase().indexOf(words[0]), 0);
        var start = at > SnippetLength / 2 ? text.lastIndexOf(' ', at - SnippetLength / 3) + 1 : 0;
        var snippet = append(parent, 'div', 'SRText', start > 0 ? '… ' : '');
        snippet.appendChild(document.createTextNode(text.substring(start, at)));
        append(snippet, 'b', '', text.substr(at, words[0].length));
        snippet.appendChild(document.createTextNode(text.substring(at + words[0].length, start + SnippetLength + words[0].length) + ' …'));
    }

    // The same structure as Doxygen's own results, so that its keys work.
    function addResult(parent, entry, number) {
        var row = append(parent, 'div', 'SRResult', '');
        row.id = 'SR_text' + number;
        row.style.display = 'block';
        var cell = append(row, 'div', 'SREntry', '');
        var link = append(cell, 'a', 'SRSymbol', entry[2] && entry[2] !== entry[1] ? entry[1] + ': ' + entry[2] : entry[1]);
        var item = (typeof searchData === 'undefined' ? 0 : searchData.length) + number;
        link.id = 'Item' + item;
        link.href = entry[0];
        link.target = '_parent';
        if (typeof searchResults !== 'undefined')
            setKeyActions(link, 'return searchResults.Nav(event,' + item + ')');
        addSnippet(cell, entry[3]);
    }

    var found = words.length === 0 ? [] : textIndex.map(function (entry) {
        return {entry: entry, score: scoreOf(entry)};
    }).filter(function (result) {
        return result.score > 0;
    }).sort(function (a, b) {
        return b.score - a.score;
    }).slice(0, MostResults);
    if (found.length === 0)
        return;
    document.getElementById('NoMatches').style.display = 'none';
    var list = document.getElementById('SRIndex');
    append(list, 'div', 'SRTitle', 'In the text');
    found.forEach(function (result, number) {
        addResult(list, result.entry, number);
    });
})();
