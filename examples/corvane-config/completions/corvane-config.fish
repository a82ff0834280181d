# Completion in fish. The candidates come from the program itself.

function __corvane_config_candidates
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    for line in ($words[1] --complete $words[2..] "$typed" 2>/dev/null)
        if string match -q \t'*' -- $line
            __fish_complete_path "$typed"
        else
            echo $line
        end
    end
end
complete -c corvane-config -f -a '(__corvane_config_candidates)'
