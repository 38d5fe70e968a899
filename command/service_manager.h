/// \file
/// The service manager that has started the command: systemd, or whatever keeps its protocol (sd_notify(3)).
#pragma once

namespace dtsdb::tools {

/// What the manager is notified of. Nothing happens where the command was started by hand.
class ServiceManager {
 public:
  ServiceManager();

  /// The service has started: what depends on it may.
  void Ready() const;
  /// A sign of life. The manager ends a service that gives none for as long as its watchdog waits.
  void Alive() const;
  /// The service is about to end.
  void Stopping() const;

  /// For how many milliseconds at most a service that waits should give no sign of life: half as long as the watchdog
  /// waits, and more than a day without one.
  int LongestSilence() const { return m_longestSilence; }

 private:
  int m_longestSilence;
};

}  // namespace dtsdb::tools
