/// \file
/// The server's answers, without a socket: which address is which document, and who gets it.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

#include "page/access.h"
#include "page/event_hub.h"
#include "page/live_model.h"
#include "page/what_if_copies.h"

namespace dtsdb::page {

/// A request as a viewer has sent it. Texts are raw, but for the parameters, which are decoded.
struct PageRequest {
  std::string method = "GET";
  std::string path{};
  std::map<std::string, std::string> parameters{};
  std::string host{};    ///< the header Host
  std::string origin{};  ///< the header Origin, empty without one
  std::string body{};
};

/// What it gets.
struct PageAnswer {
  int status = 200;
  std::string type = "text/plain; charset=utf-8";
  std::string body{};
  std::map<std::string, std::string> headers{};  ///< beside those that every answer has
  bool isEventStream = false;                    ///< in the place of a body the events follow, as they come
};

/// How much there may be of what costs memory.
struct SiteLimits {
  std::size_t copies = 16;                      ///< viewers that try something out
  std::chrono::seconds copyIdle{10 * 60};       ///< a copy that wasn't used for so long may be replaced
  std::size_t events = 1000;                    ///< in one list that is tried out
  std::size_t body = std::size_t{1024} * 1024;  ///< bytes of a request
};

/// Answers requests. Any thread may call it.
class Site {
 public:
  /// The model must outlive the site.
  Site(const LiveModel& model, Access access, SiteLimits limits = {});

  PageAnswer AnswerTo(const PageRequest& request);

  /// True when such a request may have a body, which is looked at before it is read.
  bool TakesBody(const PageRequest& request) const;

  /// The headers that every answer has.
  static std::map<std::string, std::string> Headers();

  const SiteLimits& Limits() const { return m_limits; }

 private:
  /// What is left of the path behind the token; false when the request is none of this page's.
  bool Admits(const PageRequest& request, std::string& path, PageAnswer& refusal) const;
  static PageAnswer File(const std::string& name);
  PageAnswer Api(const std::string& name, const PageRequest& request);
  PageAnswer Document(const std::string& name, const PageRequest& request);
  PageAnswer DocumentOfCopy(const std::string& name, const std::string& argument, const std::string& viewer);
  PageAnswer Try(const PageRequest& request);
  PageAnswer Script(const std::string& viewer);

  const LiveModel& m_model;
  Access m_access;
  SiteLimits m_limits;
  WhatIfCopies m_copies;
};

}  // namespace dtsdb::page
