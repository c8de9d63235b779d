#ifndef CONSOLE_REPORT_PAGE_H
#define CONSOLE_REPORT_PAGE_H

#include <string>

namespace console {

/// A page that has all that is known of a card in itself: console/report/ with the data put in. It needs no network,
/// and what a scenario holds reaches it as text.
struct ReportPage {
  std::string scenario;        ///< its name
  unsigned until = 0;          ///< the last line that was done; 0: all were
  std::string picture;         ///< as Graphviz draws it, in SVG
  std::string card;            ///< JSON, of diagnosis::ReportJson
  std::string sweep = "null";  ///< JSON, of SweepReport

  std::string Html() const;
};

}  // namespace console

#endif
