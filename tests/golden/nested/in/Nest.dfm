object DM: TDM
  object Q: TQuery
    Left = 1
    object F: TStringField
      Size = 10
    end
    object F: TStringField
      SIZE = 10
    end
    object Inner: TQuery
      DatabaseName = 'stays'
      object Deep: TTable
      end
    end

    Top = 2
    inline G: TFrame
      inherited H: TTable
        Left = 3
      end
    end
    CachedUpdates = True
  end
  object R: TQuery
    object F: TStringField
      Size = 10
    end
  end
end
