#ifndef HAL_CALLBACKS_ITF_H
#define HAL_CALLBACKS_ITF_H

#pragma GCC visibility push(default)

/// The card's logging callback.
class HalCallbacksItf {
 public:
  virtual ~HalCallbacksItf();

  /// Never null; owned by the platform.
  static HalCallbacksItf* getInstance();

  /// Writes one line. Levels: 3 failure, 4 rejected request or harmless miss, 6 notice, 7 progress. The arguments are
  /// read during the call only.
  virtual void log(int level, const char* format, ...) __attribute__((format(printf, 3, 4))) = 0;
};

#pragma GCC visibility pop

#endif
