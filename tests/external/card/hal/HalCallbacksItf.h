#pragma once

struct HalCallbacksItf {
  virtual bool wants(int level) const = 0;
  virtual void log(int level, const char* format, ...) = 0;
  virtual ~HalCallbacksItf() = default;

  static HalCallbacksItf* getInstance();
};
