// orvane-host themes: lists, shows, chooses, copies, exports, imports and
// previews the themes kept in the settings.
#include <fstream>
#include <iostream>
#include <ostream>

#include "host_app.h"
#include "host_themes.h"

namespace OrvaneHost {
namespace {

int Usage(std::ostream& err) {
  err << "usage: orvane-host themes list | show NAME | current [NAME] | copy NAME | export NAME FILE |"
         " import FILE | preview NAME FILE.svg\n";
  return 2;
}

std::shared_ptr<Kf::Theme> FindOrComplain(Kf::Themes& themes, const std::string& name) {
  std::shared_ptr<Kf::Theme> theme = themes.Find(name);
  if (!theme) std::cerr << "orvane-host: no theme named \"" << name << "\" (see: orvane-host themes list)\n";
  return theme;
}

bool SaveOrComplain(const Kf::Themes& themes) {
  if (themes.Save()) return true;
  GePath file;
  (void)Kf::Themes::GetThemesFile(file);
  std::cerr << "orvane-host: could not save " << file.ToString() << '\n';
  return false;
}

void List(Kf::Themes& themes, std::ostream& out) {
  const auto all = themes.GetThemes();
  const std::size_t current = themes.GetCurrentIndex();
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Kf::Theme& theme = *all[i];
    out << (i == current ? "* " : "  ") << theme.GetName() << "  ("
        << (theme.GetIsStandard() ? "standard" : "user, based on " + Kf::Theme::TypeToTypeString(theme.GetBaseType()))
        << (theme.GetIsModified() ? ", modified" : "") << ")\n";
  }
}

void Show(const Kf::Theme& theme, std::ostream& out) {
  Kf::EditorFontInfo info = theme.GetEditorFontInfo();
  info.UpdateAutomaticColor();
  out << "name:              " << theme.GetName() << '\n'
      << "type:              " << Kf::Theme::TypeToTypeString(theme.GetType()) << '\n'
      << "base type:         " << Kf::Theme::TypeToTypeString(theme.GetBaseType()) << '\n'
      << "modified:          " << (theme.GetIsModified() ? "yes" : "no") << '\n'
      << "proportional font: " << theme.GetProportionalFont().Description() << '\n'
      << "fixed font:        " << theme.GetFixedFont().Description() << '\n'
      << "editor font:       " << info.GetBaseFont().Description() << '\n'
      << "editor background: " << HexColor(info.GetBackgroundColor())
      << (info.IsBackgroundColorAutomatic() ? " (automatic)" : "") << '\n'
      << "syntax categories (colour, style, contrast against the background):\n";
  for (int c = 0; c < info.FontCount(); ++c) {
    const auto cat = static_cast<Kf::EdSyntaxTokenCategory>(c);
    out << "  " << (c < 10 ? " " : "") << c << "  " << HexColor(info.LookupColor(cat))
        << (info.IsColorAutomatic(cat) ? " auto" : "     ") << "  "
        << (Kf::EditorFontInfo::HasStyling(cat) ? Kf::XFont::StyleName(info.LookupStyle(cat)) : std::string("-"))
        << "  " << static_cast<int>(ContrastRatio(info.LookupColor(cat), info.GetBackgroundColor()) * 100) / 100.0
        << ":1\n";
  }
  out << "display elements set:";
  for (int e = 0; e < Kf::kDisplayElementCount; ++e) {
    const Kf::XColor color = theme.GetXColor(static_cast<Kf::DisplayElement>(e));
    if (color.IsValid()) out << ' ' << e << '=' << HexColor(color);
  }
  out << '\n';
}

int RunThemes(HostApp& app, const std::vector<std::string>& args) {
  std::ostream& out = app.Out();
  if (args.empty()) return Usage(std::cerr);
  Kf::Themes* themes = LoadedThemes(std::cerr);
  if (!themes) return 1;
  const std::string& verb = args[0];

  if (verb == "list" && args.size() == 1) {
    List(*themes, out);
    return 0;
  }
  if (verb == "show" && args.size() == 2) {
    auto theme = FindOrComplain(*themes, args[1]);
    if (!theme) return 1;
    Show(*theme, out);
    return 0;
  }
  if (verb == "current" && args.size() == 1) {
    out << themes->GetCurrent()->GetName() << '\n';
    return 0;
  }
  if (verb == "current" && args.size() == 2) {
    if (!FindOrComplain(*themes, args[1])) return 1;
    if (!themes->SetCurrent(args[1]) || !SaveOrComplain(*themes)) return 1;
    out << "current theme: " << themes->GetCurrent()->GetName() << '\n';
    return 0;
  }
  if (verb == "copy" && args.size() == 2) {
    if (!FindOrComplain(*themes, args[1])) return 1;
    auto copy = themes->AddCopy(args[1]);
    if (!copy || !SaveOrComplain(*themes)) return 1;
    out << "added \"" << copy->GetName() << "\"\n";
    return 0;
  }
  if (verb == "export" && args.size() == 3) {
    auto theme = FindOrComplain(*themes, args[1]);
    if (!theme) return 1;
    if (!theme->Save(GePath(args[2]))) {
      std::cerr << "orvane-host: could not write " << args[2] << '\n';
      return 1;
    }
    out << "wrote " << args[2] << '\n';
    return 0;
  }
  if (verb == "import" && args.size() == 2) {
    std::string error;
    const std::string name = themes->Import(GePath(args[1]), &error);
    if (name.empty()) {
      std::cerr << "orvane-host: refused: " << error << '\n';
      return 1;
    }
    if (!SaveOrComplain(*themes)) return 1;
    out << "imported \"" << name << "\"\n";
    return 0;
  }
  if (verb == "preview" && args.size() == 3) {
    auto theme = FindOrComplain(*themes, args[1]);
    if (!theme) return 1;
    std::ofstream file(GePath(args[2]).Native(), std::ios::trunc);
    WriteThemePreviewSvg(*theme, file);
    file.close();
    if (!file) {
      std::cerr << "orvane-host: could not write " << args[2] << '\n';
      return 1;
    }
    out << "wrote " << args[2] << '\n';
    return 0;
  }
  return Usage(std::cerr);
}

Subcommand themesCommand("themes",
                         "themes list | show NAME | current [NAME] | copy NAME | export NAME FILE | import FILE |"
                         " preview NAME FILE.svg",
                         RunThemes);

}  // namespace
}  // namespace OrvaneHost
