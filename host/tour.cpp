// The "tour" subcommand: runs every registered tour step in order.
#include <ostream>

#include "host_app.h"

namespace OrvaneHost {
namespace {

int RunTour(HostApp& app, const std::vector<std::string>&) {
  std::ostream& out = app.Out();
  out << "Orvane reference host: a tour of the library's services\n";
  int number = 0;
  for (TourStep* step : TourStep::All()) {
    out << "\n== " << ++number << ". " << step->title << " ==\n";
    step->run(app);
  }
  out << "\nTour complete: " << number << " steps.\n";
  return 0;
}

Subcommand tour("tour", "tour                       a guided tour of the library's services (default)", RunTour);

}  // namespace
}  // namespace OrvaneHost
