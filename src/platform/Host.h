// All that the system asks of its host, in one hand.
#pragma once

namespace tallowin::platform {

class EventLoop;
class SocketFactory;
class Registry;
class IniFiles;
class Paths;
class Shell;
class RegionalSettings;
class SingleInstance;
class OperatingSystem;
class Sound;
class SystemShutdown;
class DialUp;
class Smtp;
class Icmp;
class Names;
class Files;
class Processes;
class FileFacts;
class VersionInfo;
class ResourceModules;
class IpStatistics;
class SystemClock;
class Http;

/// References only: the host that builds it owns everything and outlives the program.
struct Host {
  EventLoop& loop;
  SocketFactory& sockets;
  Registry& registry;
  IniFiles& iniFiles;
  Paths& paths;
  Shell& shell;
  RegionalSettings& regional;
  SingleInstance& instance;
  OperatingSystem& system;
  Sound& sound;
  SystemShutdown& shutdown;
  DialUp& dialUp;
  Smtp& smtp;
  Icmp& icmp;
  Names& names;
  Files& files;
  Processes& processes;
  FileFacts& fileFacts;
  VersionInfo& versionInfo;
  ResourceModules& modules;
  IpStatistics& ipStatistics;
  SystemClock& clock;
  Http& http;
};

}  // namespace tallowin::platform
