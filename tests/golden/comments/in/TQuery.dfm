object Form1: TForm1
end
