// Fails a test on a log line that it did not expect.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "nk/nk_logger.h"

namespace KivoraTest {

/// The current logger of every test. A line that no Expect() announced fails the test when it ends.
class CFatalLog : public NK::CLogger {
public:
    static CFatalLog& Instance();
    /// Announces a line that contains `part`; a test in which it does not come fails too.
    void Expect(const std::wstring& part);
    /// A line from elsewhere, such as a warning of Qt's.
    void Add(std::wstring line);
    /// Lines since the test began.
    std::vector<std::wstring> GetLines() const;
    /// Between tests: reports what went wrong and starts anew.
    void BeginTest();
    void EndTest();

protected:
    void Output(const NK::CString& timestamp, const NK::CString& message) override;

private:
    mutable std::mutex mutex_;
    std::vector<std::wstring> lines_;
    std::vector<std::wstring> expected_;
};

}  // namespace KivoraTest
