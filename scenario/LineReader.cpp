#include "scenario/LineReader.h"

#include "scenario/Suggestion.h"

namespace scenario {

const ReadStatement& LineReader::Read(const SourceLine& line, const Counters& rounds) {
  const auto read = [&](const std::vector<Token>& words) {
    return language_.Read(words, {past_.card, Block(line, rounds), past_.clients, past_.watchers});
  };
  if (line.counts) return last_ = read(Words(line, rounds));
  auto kept = kept_.find(&line);
  if (kept == kept_.end()) kept = kept_.emplace(&line, read(line.words)).first;
  return kept->second;
}

Loop LineReader::ReadLoop(const SourceLine& line, const Counters& rounds) {
  Loop loop = scenario::ReadLoop(Words(line, rounds), language_.Find(line.words[0].text)->form);
  for (const auto& [name, value] : rounds) {
    if (name != loop.counter) continue;
    throw SyntaxError{line.words[1].offset, Quoted(name) + " is a name already, of a loop around this one or of -D"};
  }
  return loop;
}

softcard::CardDescription LineReader::ReadCard(const SourceLine& line, const Counters& rounds) {
  return scenario::ReadCard(Fields(language_.Find(line.words[0].text)->form, Words(line, rounds), 1));
}

const std::vector<Token>& LineReader::Words(const SourceLine& line, const Counters& rounds) {
  words_ = line.words;
  if (texts_.size() < words_.size()) texts_.resize(words_.size());
  for (std::size_t i = 0; i < words_.size(); ++i) {
    if (words_[i].text.find('$') == std::string_view::npos) continue;
    texts_[i].clear();
    Substitute(words_[i], rounds, texts_[i]);
    words_[i].text = texts_[i];
  }
  return words_;
}

const std::vector<std::string>& LineReader::Block(const SourceLine& line, const Counters& rounds) {
  block_.resize(line.body.size());
  for (std::size_t i = 0; i < block_.size(); ++i) {
    block_[i].clear();
    Substitute(line.body[i].words[0], rounds, block_[i]);
  }
  return block_;
}

}  // namespace scenario
