#include "ZQSimFaults.h"

#include <algorithm>

namespace ZQAPI::sim {

std::string FormAnswer(EAnswerForm form, std::string_view hardwareAddress, std::string_view answer,
                       std::size_t longAnswerBytes) {
    std::string datagram(hardwareAddress);
    switch (form) {
        case EAnswerForm::kProper:
            break;
        case EAnswerForm::kNoColon:
            return datagram.append(" ").append(answer).append("\n");
        case EAnswerForm::kTooShort:
            return datagram.substr(0, 8).append("\n");
        case EAnswerForm::kTooLong: {
            datagram.append(":").append(answer);
            datagram.resize(std::max(datagram.size(), longAnswerBytes - 1), 'X');
            return datagram.append("\n");
        }
        case EAnswerForm::kNoLineFeed:
            datagram.append(":").append(answer);
            datagram.resize(std::max(datagram.size(), longAnswerBytes), 'X');
            return datagram;
        case EAnswerForm::kEmpty:
            return {};
        case EAnswerForm::kWrongAddress:
            datagram.back() = datagram.back() == '0' ? '1' : '0';
            break;
        case EAnswerForm::kControlCharacters:
            return datagram.append(":\a").append(answer).append("\x1B\n");
    }
    return datagram.append(":").append(answer).append("\n");
}

std::string FormLine(EAnswerForm form, std::string_view answer, std::size_t longAnswerBytes) {
    std::string line(answer);
    switch (form) {
        case EAnswerForm::kProper:
        case EAnswerForm::kNoColon:
            break;
        case EAnswerForm::kTooShort:
            line.resize(line.size() / 2);
            break;
        case EAnswerForm::kTooLong:
            line.resize(std::max(line.size(), longAnswerBytes - 1), 'X');
            break;
        case EAnswerForm::kEmpty:
            line.clear();
            break;
        case EAnswerForm::kWrongAddress:
            line = "Another maker's camera";
            break;
        case EAnswerForm::kControlCharacters:
            line = "\a" + line + "\x1B";
            break;
        case EAnswerForm::kNoLineFeed:
            line.resize(std::max(line.size(), longAnswerBytes), 'X');
            return line;
    }
    return line + "\n";
}

}  // namespace ZQAPI::sim
